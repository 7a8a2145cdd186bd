// The containers beside the standard's, and the arrays of options that a VM is created with. No Java is called.
#include <memory>
#include <numeric>
#include <string>
#include <unordered_map>
#include <vector>

#include "Host.h"

namespace bench {
namespace {

using mirel::base::CRef;
using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;
using mirel::util::CHashtable;
using mirel::util::CVector;

constexpr int Many = 1000;

struct Counter : mirel::base::CBase {
  long value = 1;
};

// Sixteen units that differ in the last ones.
std::u16string Key(int i) {
  std::u16string key(12, u'k');
  for (int digit = 0; digit < 4; ++digit, i /= 10) key += static_cast<char16_t>(u'0' + i % 10);
  return key;
}

// What a host writes for texts that are seldom more than ASCII.
std::size_t WriteUtf8(const std::u16string& units, char* to) {
  char* end = to;
  for (const char16_t unit : units) {
    if (unit < 0x80) {
      *end++ = static_cast<char>(unit);
    } else if (unit < 0x800) {
      *end++ = static_cast<char>(0xC0 | (unit >> 6));
      *end++ = static_cast<char>(0x80 | (unit & 0x3F));
    } else {
      *end++ = static_cast<char>(0xE0 | (unit >> 12));
      *end++ = static_cast<char>(0x80 | (unit >> 6 & 0x3F));
      *end++ = static_cast<char>(0x80 | (unit & 0x3F));
    }
  }
  *end++ = '\0';
  return static_cast<std::size_t>(end - to);
}

void AddOptionArrays(int count) {
  std::vector<std::u16string> texts;
  auto* const options = new torvan::jni::options::COptions();  // for as long as the rows
  for (int i = 0; i < count; ++i) {
    texts.push_back(u"-Dname." + Key(i) + u"=value");
    options->AddOption(torvan::jni::options::CCustomOption(texts.back().c_str()));
  }
  Add("containers", "array of " + std::to_string(count) + " options",
      {Single(
           "raw",
           [texts](long) {
             auto* const made = static_cast<JavaVMOption*>(std::calloc(texts.size(), sizeof(JavaVMOption)));
             Require(made != nullptr);
             char buffer[256];
             for (std::size_t i = 0; i < texts.size(); ++i) {
               const std::size_t size = WriteUtf8(texts[i], buffer);
               made[i].optionString = static_cast<char*>(std::malloc(size));
               Require(made[i].optionString != nullptr);
               std::char_traits<char>::copy(made[i].optionString, buffer, size);
             }
             const long result = made[texts.size() - 1].optionString[18];
             for (std::size_t i = 0; i < texts.size(); ++i) std::free(made[i].optionString);
             std::free(made);
             return result;
           },
           count),
       Single(
           "COptions",
           [options, count](long) {
             JavaVMOption* const made = options->CreateJniOptions();
             const long result = made[count - 1].optionString[18];
             options->DestroyJniOptions(made);
             return result;
           },
           count)});
}

}  // namespace

void AddContainers() {
  AddOptionArrays(10);
  AddOptionArrays(200);
  Add("containers", "1,000 numbers into a vector",
      {Single(
           "std::vector",
           [](long i) {
             std::vector<long> numbers;
             for (int n = 0; n < Many; ++n) numbers.push_back(i);
             return numbers[Many - 1];
           },
           Many),
       Single(
           "CVector",
           [](long i) {
             CVector<long> numbers(10, 5);
             for (int n = 0; n < Many; ++n) numbers.Add(i);
             return numbers[Many - 1];
           },
           Many)});
  static std::vector<std::u16string> keys;
  static auto& ownKeys = *new CVector<CUnicodeString>(Many, Many);
  for (int i = 0; i < Many; ++i) {
    keys.push_back(Key(i));
    ownKeys.Add(CUnicodeString(keys.back().c_str()));
  }
  Add("containers", "1,000 texts into a table and found",
      {Single(
           "std::unordered_map",
           [](long) {
             std::unordered_map<std::u16string, int> table;
             for (int i = 0; i < Many; ++i) table[keys[static_cast<std::size_t>(i)]] = i;
             long sum = 0;
             for (const std::u16string& key : keys) sum += table.at(key);
             return sum;
           },
           Many),
       Single(
           "CHashtable",
           [](long) {
             CHashtable<CUnicodeString, int> table(&mirel::util::GetCUnicodeStringHashCode, 101, 0.75f);
             for (unsigned i = 0; i < Many; ++i) table.Put(ownKeys[i], static_cast<int>(i));
             long sum = 0;
             for (unsigned i = 0; i < Many; ++i) sum += table.Get(ownKeys[i]);
             return sum;
           },
           Many)});
  Add("containers", "1,000 texts appended",
      {Single(
           "std::u16string",
           [](long) {
             std::u16string text;
             for (int i = 0; i < Many; ++i) text += u"\tat some place";
             return static_cast<long>(text.size());
           },
           Many),
       Single(
           "CUnicodeStringBuffer",
           [](long) {
             CUnicodeStringBuffer text(32);
             for (int i = 0; i < Many; ++i) text += RX_TEXT("\tat some place");
             return static_cast<long>(text.ToString().GetLength());
           },
           Many)});
  static const auto shared = std::make_shared<Counter>();
  static const CRef<Counter> counted(new Counter());
  Add("containers", "counted reference copied and dropped",
      {Single("std::shared_ptr",
              [](long) {
                const std::shared_ptr<Counter> copy(shared);
                benchmark::DoNotOptimize(&copy);
                return copy->value;
              }),
       Single("CRef", [](long) {
         const CRef<Counter> copy(counted);
         benchmark::DoNotOptimize(&copy);
         return copy->value;
       })});
}

}  // namespace bench
