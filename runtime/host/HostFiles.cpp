// The text files that scripts read and write: those of the game, and what they save.

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "ConfinedPath.hpp"
#include "FileBytes.hpp"
#include "HostFunctions.hpp"
#include "ScriptValue.hpp"
#include "TextFields.hpp"

namespace port::host {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kLineEnds = "\r\n";

ScriptFiles& files(const HostCall& call) {
    return call.world().scripted.files;
}

ScriptFileStream* stream(const HostCall& call) {
    return files(call).find(call.handle(0));
}

// From where the stream stands.
std::string_view currentLine(HostCall& call, const ScriptFileStream& stream) {
    const std::string_view rest = std::string_view(stream.buffer).substr(stream.pos);
    const std::string_view line = rest.substr(0, rest.find_first_of(kLineEnds));
    call.charge(line.size() / script::kTextPerStep);
    return line;
}

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Words stand between blanks. Quotes of either kind hold blanks, and go; inside them a backslash
// keeps the character behind it from meaning anything. Empty for a word that is not there.
std::string wordOf(std::string_view line, int index) {
    if (index < 0) return {};
    std::string word;
    char quote = '\0';
    bool inWord = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote == '\0' && isBlank(c)) {
            if (inWord && index-- == 0) return word;
            inWord = false;
            continue;
        }
        if (!inWord) word.clear();
        inWord = true;
        if (quote == '\0' && (c == '"' || c == '\'')) {
            quote = c;
        } else if (c == quote) {
            quote = '\0';
        } else {
            if (quote != '\0' && c == '\\' && i + 1 < line.size()) ++i;
            word += line[i];
        }
    }
    return inWord && index == 0 ? word : "";
}

// As C writes whole numbers: 0x and 0 in front name their base. 0 for none, and for one too large.
double wholeNumber(const std::string& word) {
    errno = 0;
    const long long number = std::strtoll(word.c_str(), nullptr, 0);
    return errno == 0 ? static_cast<double>(number) : 0;
}

}  // namespace

ScriptValue openFileStream(HostCall& call) {
    call.charge(script::kFileSteps);
    const fs::path base = call.flag(1) ? call.services.root / "saves" : call.services.dataRoot;
    const fs::path path = confinedPath(base, call.text(0));
    const auto bytes = path.empty() ? std::nullopt : readFileBytes(path, ScriptFiles::kMostBytes);
    if (!bytes) return kNobody;
    call.charge(bytes->size() / script::kTextPerStep);
    const std::uintptr_t handle = files(call).open({bytes->begin(), bytes->end()});
    if (handle == 0) call.tag("openfilestream-limit");
    return handle;
}

ScriptValue createFileStream(HostCall& call) {
    return files(call).open({});
}

ScriptValue saveFileStream(HostCall& call) {
    // A folder's room on a disk, so that files cannot be too many either.
    constexpr std::size_t kLeastSaved = 4096;
    call.charge(script::kSaveSteps);
    const ScriptFileStream* source = stream(call);
    const fs::path saves = call.services.root / "saves";
    const fs::path path = confinedPath(saves, call.text(1));
    const fs::path temporary = confinedPath(saves, call.text(1) + ".tmp");
    if (!source || path.empty() || temporary.empty()) return false;
    const std::size_t size = std::max(kLeastSaved, source->buffer.size());
    std::size_t& saved = files(call).saved;
    if (size > ScriptFiles::kMostSaved - saved) {
        call.tag("savefilestream-limit");
        return false;
    }
    saved += size;
    call.charge(size / script::kTextPerStep);
    std::error_code failed;
    fs::create_directories(path.parent_path(), failed);
    return replaceFile(path, source->buffer, temporary);
}

ScriptValue closeFileStream(HostCall& call) {
    return files(call).close(call.handle(0));
}

ScriptValue getFileStreamLine(HostCall& call) {
    const ScriptFileStream* from = stream(call);
    return std::string(from ? currentLine(call, *from).substr(0, script::kMaxText) : "");
}

ScriptValue getFileStreamArgument(HostCall& call) {
    const ScriptFileStream* from = stream(call);
    const std::string_view line =
        from ? currentLine(call, *from).substr(0, script::kMaxText) : std::string_view();
    std::string word = wordOf(line, call.integer(1));
    const std::string& type = call.text(2);
    if (equalsFolded(type, "int") || equalsFolded(type, "integer")) return wholeNumber(word);
    if (equalsFolded(type, "float") || equalsFolded(type, "decimal")) {
        return script::parsedNumber(word);
    }
    return word;
}

// The two characters of a line end as Windows writes it are one end.
ScriptValue fileStreamNextLine(HostCall& call) {
    ScriptFileStream* from = stream(call);
    if (!from) return false;
    from->pos += currentLine(call, *from).size();
    const std::string_view rest = std::string_view(from->buffer).substr(from->pos);
    from->pos += rest.starts_with(kLineEnds) ? 2 : std::min<std::size_t>(1, rest.size());
    return from->pos < from->buffer.size();
}

ScriptValue getFileStreamPosition(HostCall& call) {
    const ScriptFileStream* from = stream(call);
    return from ? static_cast<double>(from->pos) : 0.0;
}

ScriptValue setFileStreamPosition(HostCall& call) {
    ScriptFileStream* to = stream(call);
    if (!to) return false;
    const auto wanted = static_cast<std::size_t>(std::max(0, call.integer(1)));
    to->pos = std::min(wanted, to->buffer.size());
    return true;
}

ScriptValue fileStreamAppend(HostCall& call) {
    ScriptFileStream* to = stream(call);
    const int type = call.integer(2);
    if (!to || (type != 0 && type != 1)) return false;
    const std::string text = (type == 0 ? "\r\n" : "") + call.text(1) + " ";
    call.charge(text.size() / script::kTextPerStep);
    if (files(call).append(*to, text)) return true;
    call.tag("filestreamappend-limit");
    return false;
}

}  // namespace port::host
