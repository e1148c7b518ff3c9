#include <langinfo.h>
#include <locale.h>
#include <stdlib.h>
#include <unistd.h>

#include <string_view>

#include "platform/Console.hpp"

namespace tindrel {
namespace {

constexpr const char* kLocale = "LC_ALL";

bool localeIsUtf8() {
    const locale_t locale = ::newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr) return false;
    const bool result = std::string_view(::nl_langinfo_l(CODESET, locale)) == "UTF-8";
    ::freelocale(locale);
    return result;
}

}  // namespace

Restored showUtf8() {
    return Restored();
}

Restored nameFilesInUtf8() {
    if (localeIsUtf8()) return Restored();
    const char* const value = ::getenv(kLocale);
    const std::optional<std::string> before =
        value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    ::setenv(kLocale, "C.UTF-8", 1);
    return Restored([before] {
        if (before) {
            ::setenv(kLocale, before->c_str(), 1);
        } else {
            ::unsetenv(kLocale);
        }
    });
}

std::optional<std::vector<std::string>> commandLine(int count, char** arguments) {
    return std::vector<std::string>(arguments, arguments + count);
}

bool errorStreamIsTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace tindrel
