// Numbers as text for people, without heap memory.
#pragma once

namespace mirel::base {

// The decimal digits of a number; they live as long as this object.
class Decimal {
 public:
  explicit Decimal(unsigned int number) noexcept : m_first(m_text + sizeof(m_text) - 1) {
    *m_first = 0;
    do {
      *--m_first = static_cast<char>('0' + number % 10);
      number /= 10;
    } while (number != 0);
  }
  Decimal(const Decimal&) = delete;
  Decimal& operator=(const Decimal&) = delete;

  const char* GetText() const noexcept { return m_first; }

 private:
  char m_text[11];  // 4294967295 and a zero
  char* m_first;
};

}  // namespace mirel::base
