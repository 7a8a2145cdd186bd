#include <torvan/java/detail/Text.h>

#include <torvan/java/Failure.h>

namespace torvan::java::detail {

namespace {

constexpr char32_t Replacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void AppendUtf8(std::string& text, char32_t point) {
  const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((point >> shift) & 0x3F)); };
  if (point < 0x80) {
    text += static_cast<char>(point);
  } else if (point < 0x800) {
    text += static_cast<char>(0xC0 | (point >> 6));
    tail(0);
  } else if (point < 0x10000) {
    text += static_cast<char>(0xE0 | (point >> 12));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0 | (point >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

// Takes one code point from the front of `rest`; false when it is not UTF-8 (overlong, a surrogate, cut, too large).
bool TakePoint(std::string_view& rest, char32_t& point) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
  const unsigned char lead = byte(0);
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 0 || rest.size() < length) return false;
  point = length == 1 ? lead : lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return false;
    point = (point << 6) | (byte(i) & 0x3Fu);
  }
  constexpr char32_t Least[] = {0, 0, 0x80, 0x800, 0x10000};
  if (point < Least[length] || point > 0x10FFFF || (point >= 0xD800 && point < 0xE000)) return false;
  rest.remove_prefix(length);
  return true;
}

}  // namespace

std::string ToUtf8(std::u16string_view units) {
  std::string text;
  text.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    char32_t point = units[i];
    if (IsHighSurrogate(point) && i + 1 < units.size() && IsLowSurrogate(units[i + 1])) {
      point = 0x10000 + ((point - 0xD800) << 10) + (units[++i] - 0xDC00u);
    } else if (IsHighSurrogate(point) || IsLowSurrogate(point)) {
      point = Replacement;
    }
    AppendUtf8(text, point);
  }
  return text;
}

std::string ToModifiedUtf8(std::u16string_view units) {
  std::string text;
  for (const char16_t unit : units) {
    if (unit == 0) {
      text += "\xC0\x80";
    } else {
      AppendUtf8(text, unit);
    }
  }
  return text;
}

std::u16string ToUtf16(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  for (std::string_view rest = text; !rest.empty();) {
    char32_t point = 0;
    if (!TakePoint(rest, point)) {
      throw Misuse("java/Text", __LINE__,
                   "This text is not UTF-8 at byte " + std::to_string(text.size() - rest.size()));
    }
    if (point < 0x10000) {
      units += static_cast<char16_t>(point);
    } else {
      units += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
    }
  }
  return units;
}

std::u16string ReadUtf16(JNIEnv* env, jstring string) {
  const jsize length = env->GetStringLength(string);
  std::u16string units(static_cast<std::size_t>(length), u'\0');
  env->GetStringRegion(string, 0, length, reinterpret_cast<jchar*>(units.data()));
  return units;
}

std::string ReadUtf8(JNIEnv* env, jstring string) { return ToUtf8(ReadUtf16(env, string)); }

}  // namespace torvan::java::detail
