// Formatting and small text helpers. Text is UTF-8. Numbers never depend on the user's language.
// Threads  [any]
#pragma once
#include <cstdarg>
#include <optional>
#include <string>
#include <string_view>

namespace LText {

std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string FormatV(const char* format, va_list arguments) __attribute__((format(printf, 1, 0)));

bool EqualsNoCase(std::string_view a, std::string_view b);  // ASCII letters only
std::string LowerCase(std::string_view text);               // ASCII letters only
std::string_view Trim(std::string_view text);               // spaces, tabs, line ends

// The whole text must be the number; leading and trailing spaces are refused.
std::optional<long> ToInt(std::string_view text);
std::optional<double> ToDouble(std::string_view text);

// At most maxBytes bytes, never splitting a UTF-8 sequence.
std::string CutUtf8(std::string_view text, std::size_t maxBytes);

}  // namespace LText
