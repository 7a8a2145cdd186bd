#include <torvan/java/Failure.h>

#include <utility>

namespace torvan::java {

Failure::Failure(const char* file, unsigned int line, std::string text)
    : Failure(file, line, std::make_shared<const std::string>(std::move(text))) {}

// The base keeps the pointer alone, so the text must live where all copies share it.
Failure::Failure(const char* file, unsigned int line, std::shared_ptr<const std::string> text)
    : CJniException(file, line, text->c_str(), nullptr), m_text(std::move(text)) {}

Failure::Failure(const Failure& other) noexcept = default;
Failure& Failure::operator=(const Failure& other) noexcept = default;
Failure::~Failure() = default;

const char* Failure::what() const noexcept { return m_text->c_str(); }

Misuse::Misuse(const Misuse& other) noexcept = default;
Misuse& Misuse::operator=(const Misuse& other) noexcept = default;
Misuse::~Misuse() = default;

StartFailure::StartFailure(const StartFailure& other) noexcept = default;
StartFailure& StartFailure::operator=(const StartFailure& other) noexcept = default;
StartFailure::~StartFailure() = default;

}  // namespace torvan::java
