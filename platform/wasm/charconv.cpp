#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::to_chars_result put(char* first, char* last, const std::string& text) {
  if (static_cast<std::size_t>(last - first) < text.size()) {
    return {last, std::errc::value_too_large};
  }
  std::memcpy(first, text.data(), text.size());
  return {first + text.size(), std::errc()};
}

std::string printed(const char* format, int precision, double value) {
  char buffer[400];  // the longest double has 309 digits before its point
  const int size = std::snprintf(buffer, sizeof(buffer), format, precision, value);
  return {buffer, static_cast<std::size_t>(size)};
}

double read(const std::string& text, double /*kind*/) { return std::strtod(text.c_str(), nullptr); }
float read(const std::string& text, float /*kind*/) { return std::strtof(text.c_str(), nullptr); }

/// The fewest digits that read back as the same number, as "1.5e+00".
template <class Number>
std::string shortestScientific(Number value) {
  constexpr int mostDecimals = sizeof(Number) == sizeof(float) ? 8 : 16;
  std::string text;
  for (int decimals = 0; decimals <= mostDecimals; ++decimals) {
    text = printed("%.*e", decimals, double{value});
    if (read(text, value) == value) {
      break;
    }
  }
  return text;
}

/// The same digits without an exponent. An integer beyond them is written exactly.
template <class Number>
std::string shortestFixed(Number value, const std::string& scientific) {
  const std::size_t e = scientific.find('e');
  const int exponent = std::atoi(scientific.c_str() + e + 1);
  const std::size_t point = scientific.find('.');
  const int decimals = point == std::string::npos ? 0 : static_cast<int>(e - point - 1);
  return printed("%.*f", decimals > exponent ? decimals - exponent : 0, double{value});
}

template <class Number>
std::to_chars_result putShortest(char* first, char* last, Number value) {
  if (!std::isfinite(value)) {
    return put(first, last, printed("%.*g", 0, double{value}));
  }
  const std::string scientific = shortestScientific(value);
  const std::string fixed = shortestFixed(value, scientific);
  return put(first, last, fixed.size() <= scientific.size() ? fixed : scientific);
}

}  // namespace

namespace std {

to_chars_result to_chars(char* first, char* last, double value) {
  return putShortest(first, last, value);
}

to_chars_result to_chars(char* first, char* last, float value) {
  return putShortest(first, last, value);
}

to_chars_result to_chars(char* first, char* last, float value, chars_format /*fixed*/) {
  return put(first, last,
             isfinite(value) ? shortestFixed(value, shortestScientific(value))
                             : printed("%.*g", 0, double{value}));
}

to_chars_result to_chars(char* first, char* last, double value, chars_format format,
                         int precision) {
  return put(first, last,
             printed(format == chars_format::fixed ? "%.*f" : "%.*g", precision, value));
}

from_chars_result from_chars(const char* first, const char* last, double& value,
                             chars_format /*general*/) {
  // strtod also takes a plus, blanks, hexadecimal digits and names; the standard takes none.
  const char* end = first + (first != last && *first == '-' ? 1 : 0);
  bool digits = false;
  const auto skipDigits = [&](const char* at) {
    for (; at != last && *at >= '0' && *at <= '9'; ++at) {
      digits = true;
    }
    return at;
  };
  end = skipDigits(end);
  end = end != last && *end == '.' ? skipDigits(end + 1) : end;
  if (!digits) {
    return {first, errc::invalid_argument};
  }
  if (end != last && (*end == 'e' || *end == 'E')) {
    const char* at = end + 1;
    at += at != last && (*at == '+' || *at == '-') ? 1 : 0;
    digits = false;
    at = skipDigits(at);
    end = digits ? at : end;
  }
  const double parsed = strtod(string(first, end).c_str(), nullptr);
  if (!isfinite(parsed)) {
    return {end, errc::result_out_of_range};
  }
  value = parsed;
  return {end, errc()};
}

}  // namespace std
