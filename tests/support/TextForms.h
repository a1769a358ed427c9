// What every value type promises of its text form and of its order.

#pragma once

#include "Vyx/Strep.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

// Printing, reading and printing again loses nothing.
template <class T> void expectReadsBack(T const& value) {
  using Vyx::valueToStrep;
  Vyx::String8 const text = valueToStrep(value);
  T const again = Vyx::strepToValue<T>(text);
  EXPECT_TRUE(value == again) << text;
  EXPECT_EQ(text, valueToStrep(again));
}

// What operator<< writes.
template <class T> std::string printed(T const& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

// The message with which the text is refused as a T; what is read from it when it isn't refused.
template <class T> std::string refusal(Vyx::String8 const& text) {
  using Vyx::valueToStrep;
  try {
    T const value = Vyx::strepToValue<T>(text);
    return "read as " + std::string(Vyx::String8(valueToStrep(value)).view());
  } catch (Vyx::RangeException const& error) {
    return std::string(error.message().view());
  }
}

// What a call that is to fail says.
template <class Call> std::string rangeMessage(Call call) {
  try {
    call();
  } catch (Vyx::RangeException const& error) {
    return std::string(error.message().view());
  }
  return "nothing was thrown";
}

// All six comparisons of all pairs, of values that ascend without repetition.
template <class T> void expectAscends(std::vector<T> const& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (std::size_t j = 0; j < values.size(); ++j) {
      T const& x = values[i];
      T const& y = values[j];
      EXPECT_EQ(i == j, x == y) << i << ' ' << j;
      EXPECT_EQ(i != j, x != y) << i << ' ' << j;
      EXPECT_EQ(i < j, x < y) << i << ' ' << j;
      EXPECT_EQ(i > j, x > y) << i << ' ' << j;
      EXPECT_EQ(i <= j, x <= y) << i << ' ' << j;
      EXPECT_EQ(i >= j, x >= y) << i << ' ' << j;
    }
  }
}
