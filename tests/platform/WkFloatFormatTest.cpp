#include "platform/WkFloatFormat.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "platform/WkUString.h"

// No exponent, no superfluous trailing zero, and strtod gives back exactly the value.
TEST(WkFloatFormatTest, RoundTripsInTheShortestFixedFormAndRespectsTheBufferSize) {
  EXPECT_EQ(wkFtoaReformat(1e-15).toUtf8(), "0.000000000000001");
  EXPECT_EQ(wkFtoaReformat(-9.99e-5).toUtf8(), "-0.0000999");
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> exponent(-15.0, -4.0);
  std::vector<double> values = {std::nextafter(1e-4, 0.0), std::nextafter(1e-15, 1.0), 0.1 + 0.2};
  for (int i = 0; i < 20000; ++i) values.push_back((i % 2 ? -1 : 1) * std::pow(10.0, exponent(random)));
  for (double value : values) {
    const std::string text = wkFtoaReformat(value).toUtf8();
    ASSERT_EQ(text.find_first_of("eE"), std::string::npos) << text;
    ASSERT_TRUE(text.find('.') == std::string::npos || text.back() != '0') << text;
    ASSERT_EQ(std::strtod(text.c_str(), nullptr), value) << text;
  }
  char buffer[8];
  EXPECT_EQ(WkFloatFormat::ftoaReformat(3.3e-5, buffer, 7), 0u);  // "0.000033" needs all 8
  EXPECT_EQ(WkFloatFormat::ftoaReformat(3.3e-5, buffer, 8), 8u);
}

// The text is written with a '.' in any locale, so it must also be read with one after
// a host has switched LC_NUMERIC to a decimal-comma locale.
TEST(WkFloatFormatTest, TextReadsBackUnderADecimalCommaLocale) {
  const std::string previous = std::setlocale(LC_NUMERIC, nullptr);
  const char* commaLocale = nullptr;
  for (const char* candidate : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "ru_RU.UTF-8"}) {
    if (std::setlocale(LC_NUMERIC, candidate) != nullptr) {
      commaLocale = candidate;
      break;
    }
  }
  if (commaLocale == nullptr) GTEST_SKIP() << "no decimal-comma locale is installed";
  const IUString text = wkFtoaReformat(-9.99e-5);
  const double parsed = WkUString::parseDouble(text.data(), text.length());
  std::setlocale(LC_NUMERIC, previous.c_str());
  EXPECT_EQ(parsed, -9.99e-5) << commaLocale;
}
