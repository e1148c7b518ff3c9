#include "input/PakExtraction.hpp"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "PathEncoding.hpp"
#include "input/OutputFolders.hpp"
#include "platform/Interrupt.hpp"
#include "platform/LinkStatus.hpp"
#include "reader/DataPaths.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kMagic = "PACK";
constexpr std::string_view kDataPrefix = "data/";
constexpr std::uint64_t kHeaderBytes = 8;
constexpr std::uint64_t kFooterBytes = 4;
constexpr std::uint64_t kRecordBytes = 12;  // a record without its name
// Serves for the longest name field, too.
constexpr std::size_t kBufferBytes = 65536;

constexpr std::string_view kTooManyFiles = "PAK excede limite defensivo de arquivos";
constexpr std::string_view kTraversal = "tentativa de traversal no PAK: ";

// Why the extraction ends; never leaves this file.
struct PakError {
    std::string message;
};

void require(bool condition, std::string_view message, std::string_view detail = {}) {
    if (!condition) throw PakError{std::string(message).append(detail)};
}

struct Record {
    std::uint64_t index = 0;  // its number in the index
    std::uint64_t at = 0;     // where it stands in the file
    std::uint64_t length = 0;
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    std::string name{};  // in UTF-8, with forward slashes; empty until it is read
};

std::string cleanName(std::string_view field) {
    std::string name = PathEncoding::text(field.substr(0, field.find('\0')));
    std::replace(name.begin(), name.end(), '\\', '/');
    std::string_view rest = name;
    while (rest.substr(0, 2) == "./") rest.remove_prefix(2);
    while (rest.substr(0, 1) == "/") rest.remove_prefix(1);
    return std::string(rest);
}

// Where a name leads below the output: always below "data", which the name may carry itself.
fs::path relativeTarget(std::string_view name) {
    if (equalsFolded(name.substr(0, kDataPrefix.size()), kDataPrefix)) {
        name.remove_prefix(kDataPrefix.size());
    }
    return fs::path("data") / PathEncoding::path(name);
}

class PakReader {
  public:
    PakReader(const fs::path& pak, const ExtractionLimits& limits)
        : limits_(limits), buffer_(kBufferBytes) {
        std::error_code error;
        // A pipe of that name would make us wait for ever.
        if (fs::is_regular_file(pak, error)) file_.open(pak, std::ios::binary);
        require(file_.is_open(), "nao foi possivel abrir PAK");
        time_ = fs::last_write_time(pak, error);
        hasTime_ = !error;
        readFrame();
    }

    void extract(const fs::path& output) {
        std::error_code failure;
        fs::create_directories(output, failure);
        require(!failure, "falha criando pasta para PAK: ", failure.message());

        OutputFolders folders(output, limits_.files);
        Record record;
        record.at = indexOffset_;
        try {
            for (; readRecord(record); record.at += record.length, ++record.index) {
                letIn();
                if (record.name.empty()) continue;
                admit(record);
                write(record, target(output, record.name, folders));
            }
        } catch (PakError& error) {
            error.message += place(record);
            throw;
        }
        require(files_ > 0, "nenhum arquivo valido encontrado no PAK");
    }

  private:
    void readFrame() {
        file_.seekg(0, std::ios::end);
        const std::streamoff size = file_.tellg();
        constexpr auto kSmallest = static_cast<std::streamoff>(kHeaderBytes + kFooterBytes);
        require(size >= kSmallest, "PAK pequeno/invalido");
        require(read(0, kMagic.size()) && view(kMagic.size()) == kMagic,
                "assinatura PACK nao encontrada");
        require(read(kMagic.size(), kHeaderBytes - kMagic.size()), "cabecalho PAK truncado");
        limit_ = static_cast<std::uint64_t>(size) - kFooterBytes;
        require(read(limit_, kFooterBytes), "rodape PAK truncado");
        indexOffset_ = number(0);
        require(
            indexOffset_ >= kHeaderBytes && indexOffset_ < limit_, "offset do indice PAK invalido",
            "\n  byte " + std::to_string(limit_) + ": indexOffset=" + std::to_string(indexOffset_));
    }

    // False at the end of the index. `record` says where it stands.
    bool readRecord(Record& record) {
        record = {record.index, record.at};
        if (record.at + kRecordBytes > limit_) return false;
        require(read(record.at, kRecordBytes), "indice PAK truncado");
        record.length = number(0);
        record.offset = number(4);
        record.size = number(8);
        // An end marker, not a fault.
        if (record.length <= kRecordBytes) return false;
        require(record.at + record.length <= limit_, "registro PAK ultrapassa o indice");
        const std::uint64_t nameBytes = record.length - kRecordBytes;
        require(nameBytes <= kBufferBytes, "nome PAK excessivamente grande");
        require(read(record.at + kRecordBytes, nameBytes), "nome PAK truncado");
        record.name = cleanName(view(nameBytes));
        return true;
    }

    void admit(const Record& record) {
        require(isSafeRelativePath(PathEncoding::path(record.name)),
                "caminho inseguro dentro do PAK: ", record.name);
        require(record.offset + record.size <= indexOffset_,
                "arquivo PAK aponta para fora da area de dados: ", record.name);
        require(++files_ <= limits_.files, kTooManyFiles);
        bytes_ += record.size;
        require(bytes_ <= limits_.bytes, "PAK excede limite defensivo de extracao");
    }

    // A line for whoever repairs the PAK: what the record says and what that was held against.
    [[nodiscard]] std::string place(const Record& record) const {
        return "\n  registro " + std::to_string(record.index) + " \"" + record.name +
               "\" no byte " + std::to_string(record.at) +
               ": recordLength=" + std::to_string(record.length) +
               " fileOffset=" + std::to_string(record.offset) +
               " fileSize=" + std::to_string(record.size) + "; indice do byte " +
               std::to_string(indexOffset_) + " ao byte " + std::to_string(limit_);
    }

    // The path to write, its folder made.
    static fs::path target(const fs::path& output, const std::string& name,
                           OutputFolders& folders) {
        const fs::path relative = relativeTarget(name).lexically_normal();
        // "data//x" joins to an absolute path.
        require(isSafeRelativePath(relative), kTraversal, name);
        switch (folders.prepare(relative.parent_path())) {
            case FolderProblem::kNone:
                break;
            case FolderProblem::kLink:
                throw PakError{std::string(kTraversal).append(name)};
            case FolderProblem::kTooMany:
                throw PakError{std::string(kTooManyFiles)};
            case FolderProblem::kFailed:
                throw PakError{"falha criando pasta do PAK: " + folders.error().message()};
        }
        return (output / relative).lexically_normal();
    }

    // The file itself may lie in the session, out of an archive.
    void letIn() {
        if (InterruptHold::isAwaited()) file_.close();
        hold_.letIn();
    }

    void write(const Record& record, const fs::path& path) {
        std::error_code ignored;
        const fs::file_type there = linkStatus(path, ignored).type();
        require(there != fs::file_type::symlink, kTraversal, record.name);
        std::ofstream out;
        // Opening a pipe that lies there would wait for ever.
        if (there != fs::file_type::fifo) out.open(path, std::ios::binary | std::ios::trunc);
        require(out.is_open(), "falha criando arquivo extraido: ", displayPath(path));
        std::uint64_t at = record.offset;
        for (std::uint64_t left = record.size; left > 0;) {
            if (InterruptHold::isAwaited()) out.close();
            letIn();
            const std::uint64_t piece = std::min<std::uint64_t>(left, kBufferBytes);
            require(read(at, piece), "dados PAK truncados em: ", record.name);
            out.write(buffer_.data(), static_cast<std::streamsize>(piece));
            require(out.good(), "falha gravando arquivo PAK: ", record.name);
            at += piece;
            left -= piece;
        }
        // A full disk may show itself only now.
        out.close();
        require(out.good(), "falha gravando arquivo PAK: ", record.name);
        // A PAK holds no times, and what was unpacked again is no newer than it was.
        if (hasTime_) fs::last_write_time(path, time_, ignored);
    }

    // `size` bytes, at most the buffer's, into the buffer.
    bool read(std::uint64_t at, std::uint64_t size) {
        if (at != position_) file_.seekg(static_cast<std::streamoff>(at));
        file_.read(buffer_.data(), static_cast<std::streamsize>(size));
        position_ = at + size;
        return file_.good();
    }

    [[nodiscard]] std::string_view view(std::uint64_t size) const {
        return {buffer_.data(), static_cast<std::size_t>(size)};
    }

    [[nodiscard]] std::uint32_t number(std::size_t at) const {
        std::uint32_t value = 0;
        for (std::size_t i = 4; i-- > 0;) {
            value = (value << 8U) | static_cast<unsigned char>(buffer_[at + i]);
        }
        return value;
    }

    ExtractionLimits limits_;
    InterruptHold hold_;
    std::ifstream file_;
    fs::file_time_type time_;  // of the PAK's last change, if it has one
    bool hasTime_ = false;
    std::vector<char> buffer_;
    std::uint64_t position_ = UINT64_MAX;  // where the stream stands
    std::uint64_t limit_ = 0;              // end of the index, start of the footer
    std::uint64_t indexOffset_ = 0;
    std::uint64_t files_ = 0;
    std::uint64_t bytes_ = 0;
};

}  // namespace

bool extractPak(const fs::path& pak, const fs::path& output, std::string* error,
                const ExtractionLimits& limits) {
    try {
        PakReader(pak, limits).extract(output);
        return true;
    } catch (PakError& failure) {
        if (error != nullptr) *error = std::move(failure.message);
        return false;
    }
}

}  // namespace tindrel
