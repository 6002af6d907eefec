#pragma once

#include <clocale>
#include <string>

namespace test_support {

/// Puts the process into a locale that writes a comma as the decimal sign, if the machine has one, for as
/// long as it lives.
class DecimalComma {
public:
    DecimalComma() {
        const char* const current = std::setlocale(LC_ALL, nullptr);
        before_ = current != nullptr ? current : "C";
        for (const char* name :
             {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "German_Germany.1252", "de-DE"}) {
            if (std::setlocale(LC_ALL, name) == nullptr) continue;
            active_ = *std::localeconv()->decimal_point == ',';
            if (active_) return;
        }
    }
    DecimalComma(const DecimalComma&) = delete;
    DecimalComma& operator=(const DecimalComma&) = delete;
    ~DecimalComma() { std::setlocale(LC_ALL, before_.c_str()); }

    [[nodiscard]] bool Active() const { return active_; }

private:
    std::string before_;
    bool active_ = false;
};

}  // namespace test_support
