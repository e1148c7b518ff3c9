#include "generator/CharacterTables.hpp"

#include <string>
#include <string_view>

#include "generator/CharacterReports.hpp"
#include "generator/RuntimeEmission.hpp"
#include "generator/TableText.hpp"
#include "platform/FileStatus.hpp"
#include "platform/OutputFile.hpp"

namespace tindrel {
namespace {

using CharacterRow = Row<CharacterSpelling>;

// Fixed: a new member that stands last in its record leaves them valid.
constexpr std::string_view kFramePlaceholder =
    R"(  {"",1,0,0,false,{0,0,0,0},false,{0,0,0,0,0,0,0,0},false,{0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,-1,0},false,0.0f,-3,0,"","",0,0,0,{false,1,1,false,false,0,0,0,0,0,false},false,0.0f,"",""})";
// Short of the schema; a model without animations is dropped long before it comes here.
constexpr std::string_view kAnimationPlaceholder =
    R"(  {"",nullptr,0,false,0,-1,-1,0,0,0,-1,-1,70,2.0f,0.0f,0.0f,"","",-1,0,0,0,-1,-1,0,true,false,0.0f,75.0f,false,0.0f,0.0f,false,-1000.0f,1000.0f,nullptr,0,"",-1,0.0f,0.0f,0.0f,false,false,-1,-1,0,-1,0,0,"","","","",-1,0,-1,0})";

// Between the members of a row.
template <class Record>
constexpr std::string_view kSeparator = ",";
template <>
constexpr std::string_view kSeparator<DrawMethodDef> = ", ";
template <>
constexpr std::string_view kSeparator<FrameDef> = ", ";
template <>
constexpr std::string_view kSeparator<AnimationDef> = ", ";
template <>
constexpr std::string_view kSeparator<ModelDef> = ", ";

// appendRow(out, record, prefix) for each record: the names of its arrays begin with `prefix`.
#define RECORD(Row, Record)                                         \
    void appendRow(std::string& out, const Record& record,          \
                   [[maybe_unused]] std::string_view prefix = {}) { \
        CharacterRow row(out, kSeparator<Record>);
#define FIELD(type, name, value) row.fields(record.name);
#define NESTED(Row, name) row.nested([&] { appendRow(out, record.name); });
#define LIST(element, name, count, array) row.listed(prefix, #array, record.name.size());
#define OPTIONAL_LIST(element, name, count, array)     \
    record.name.empty() ? row.listed({}, "nullptr", 0) \
                        : row.listed(prefix, #array, record.name.size());
#define END_RECORD \
    row.close();   \
    }
#include "reader/Characters.def"

// The arrays of one model, named by its index.
class ModelWriter {
  public:
    ModelWriter(OutputFile& out, const ModelDef& model, std::size_t index)
        : out_(out), model_(model), prefix_("c" + std::to_string(index) + "_") {}

    void writeArrays() {
        for (std::size_t j = 0; j < model_.animations.size(); ++j) {
            writeAnimationArrays(model_.animations[j], animationPrefix(j));
        }
        if (!model_.attackChain.empty()) {
            writeLine("int", "chain", model_.attackChain,
                      [&](std::int32_t link) { appendValue<CharacterSpelling>(text_, link); });
        }
        if (!model_.commands.empty()) {
            writeLine("Command", "commands", model_.commands,
                      [&](const CommandDef& command) { appendRow(text_, command); });
        }
        const auto appendName = [&](const std::string& name) {
            appendValue<CharacterSpelling>(text_, name);
        };
        if (model_.weapons.empty()) {
            out_ << "static const char* " << prefix_ << "weapons[] = {nullptr};\n";
        } else {
            writeLine("char*", "weapons", model_.weapons, appendName);
        }
        if (!model_.alternatePalettes.empty()) {
            writeLine("char*", "altpals", model_.alternatePalettes, appendName);
        }
        if (!model_.paletteRemaps.empty()) {
            writeLine("PaletteRemap", "remaps", model_.paletteRemaps,
                      [&](const PaletteRemapDef& remap) { appendRow(text_, remap); });
        }
        if (!model_.defenses.empty()) {
            writeLine("Defense", "defenses", model_.defenses,
                      [&](const DefenseDef& defense) { appendRow(text_, defense); });
        }
        writeAnimations();
    }

    void writeRow() {
        beginRow();
        appendRow(text_, model_, prefix_);
        endRow();
    }

  private:
    [[nodiscard]] std::string animationPrefix(std::size_t j) const {
        return prefix_ + "a" + std::to_string(j) + "_";
    }

    void beginRow() { text_ = "  "; }
    void endRow() {
        text_ += ",\n";
        out_ << text_;
    }

    // A whole array on one line.
    template <class List, class Append>
    void writeLine(std::string_view type, std::string_view name, const List& list,
                   Append appendElement) {
        text_.clear();
        appendList(text_, list, appendElement);
        out_ << "static const " << type << ' ' << prefix_ << name << "[] = {" << text_ << "};\n";
    }

    void writeAnimationArrays(const AnimationDef& animation, const std::string& prefix) {
        out_ << "static const Frame " << prefix << "frames[] = {\n";
        if (animation.frames.empty()) out_ << kFramePlaceholder << '\n';
        for (const FrameDef& frame : animation.frames) {
            beginRow();
            appendRow(text_, frame);
            endRow();
        }
        out_ << "};\n";
        if (animation.cancels.empty()) return;
        text_.clear();
        appendList(text_, animation.cancels,
                   [&](const CancelDef& cancel) { appendRow(text_, cancel); });
        out_ << "static const Cancel " << prefix << "cancels[] = {" << text_ << "};\n";
    }

    void writeAnimations() {
        out_ << "static const Animation " << prefix_ << "animations[] = {\n";
        if (model_.animations.empty()) out_ << kAnimationPlaceholder << '\n';
        for (std::size_t j = 0; j < model_.animations.size(); ++j) {
            beginRow();
            appendRow(text_, model_.animations[j], animationPrefix(j));
            endRow();
        }
        out_ << "};\n";
    }

    OutputFile& out_;
    const ModelDef& model_;
    std::string prefix_;
    std::string text_;  // the row at work
};

}  // namespace

void writeGeneratedCharacters(const std::vector<ModelDef>& models,
                              const std::filesystem::path& outputFolder) {
    const std::filesystem::path folder = outputFolder / "runtime" / "generated";
    createDirectories(folder);

    OutputFile header(folder / "GeneratedCharacters.hpp");
    header << schemaHeader("GeneratedCharacters.hpp");
    header.close();

    OutputFile out(folder / "GeneratedCharacters.cpp");
    out << "#include \"GeneratedCharacters.hpp\"\nnamespace generated {\n";
    for (std::size_t i = 0; i < models.size(); ++i) ModelWriter(out, models[i], i).writeArrays();
    out << "const Character kCharacters[] = {\n";
    if (models.empty()) out << "  {},\n";
    for (std::size_t i = 0; i < models.size(); ++i) ModelWriter(out, models[i], i).writeRow();
    out << "};\nconst std::size_t kCharacterCount = " << models.size() << ";\n}\n";
    out.close();

    writeRenderingReport(models, outputFolder);
    writeGameplayData(models, outputFolder);
}

}  // namespace tindrel
