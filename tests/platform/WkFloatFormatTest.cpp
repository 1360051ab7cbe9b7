#include "platform/WkFloatFormat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace {

// The checks every result must pass: no exponent, no superfluous trailing zero,
// and strtod gives back exactly the value.
void expectExactFixedForm(double value) {
  const std::string text = wkFtoaReformat(value).toUtf8();
  SCOPED_TRACE(text);
  EXPECT_EQ(text.find_first_of("eE"), std::string::npos);
  if (text.find('.') != std::string::npos) {
    EXPECT_NE(text.back(), '0');
  }
  EXPECT_EQ(std::strtod(text.c_str(), nullptr), value);
}

TEST(WkFloatFormatTest, SmallMagnitudesGetTheShortestExactFixedForm) {
  EXPECT_EQ(wkFtoaReformat(1e-15).toUtf8(), "0.000000000000001");
  EXPECT_EQ(wkFtoaReformat(3.3e-5).toUtf8(), "0.000033");
  EXPECT_EQ(wkFtoaReformat(-9.99e-5).toUtf8(), "-0.0000999");
  for (double value : {1e-15, 3.3e-5, -9.99e-5, 1.2345678901234567e-10, std::nextafter(1e-4, 0.0),
                       std::nextafter(1e-15, 1.0), -std::nextafter(1e-15, 0.0), 0.1 + 0.2}) {
    expectExactFixedForm(value);
  }
}

TEST(WkFloatFormatTest, RandomValuesOfTheSmallRangeRoundTrip) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> exponent(-15.0, -4.0);
  for (int i = 0; i < 20000; ++i) {
    double value = std::pow(10.0, exponent(random));
    if (i % 2 == 1) value = -value;
    expectExactFixedForm(value);
  }
}

TEST(WkFloatFormatTest, BufferFormFitsEveryDoubleAndRefusesShortBuffers) {
  char buffer[WkFloatFormat::kMaxLength];
  const double extremes[] = {-std::numeric_limits<double>::denorm_min(), -std::numeric_limits<double>::max()};
  for (double value : extremes) {
    const std::size_t length = WkFloatFormat::ftoaReformat(value, buffer, sizeof buffer);
    ASSERT_GT(length, 0u);
    EXPECT_EQ(std::strtod(std::string(buffer, length).c_str(), nullptr), value);
  }
  EXPECT_EQ(WkFloatFormat::ftoaReformat(3.3e-5, buffer, 7), 0u);  // "0.000033" needs 8
  EXPECT_EQ(WkFloatFormat::ftoaReformat(3.3e-5, buffer, 8), 8u);
  EXPECT_EQ(wkFtoaReformat(-std::numeric_limits<double>::infinity()).toUtf8(), "-inf");
  EXPECT_EQ(wkFtoaReformat(250.0).toUtf8(), "250");
}

}  // namespace
