#include "WorldHash.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdio>
#include <deque>
#include <limits>
#include <ranges>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <variant>

namespace port {
namespace {

// Takes values as bytes; the names of their fields do not count.
class HashSink {
  public:
    template <class Name>
    void enter(const Name&) {}
    void leave() {}
    void number(std::int64_t value) { add(static_cast<std::uint64_t>(value)); }
    void fraction(double value) { add(std::bit_cast<std::uint64_t>(value)); }
    void text(std::string_view value) {
        add(value.size());
        for (const char c : value) addByte(static_cast<std::uint8_t>(c));
    }
    [[nodiscard]] std::uint64_t value() const { return hash_; }

  private:
    static constexpr std::uint64_t kOffset = 0xCBF29CE484222325U;
    static constexpr std::uint64_t kPrime = 0x100000001B3U;

    void addByte(std::uint8_t byte) { hash_ = (hash_ ^ byte) * kPrime; }
    void add(std::uint64_t bits) {
        for (int i = 0; i < 8; ++i, bits >>= 8U) addByte(static_cast<std::uint8_t>(bits));
    }

    std::uint64_t hash_ = kOffset;
};

// Takes values as lines "path=value".
class LineSink {
  public:
    void enter(std::string_view name) {
        lengths_.push_back(path_.size());
        if (!path_.empty() && !name.starts_with('[')) path_ += '.';
        path_ += name;
    }
    void enter(std::size_t index) { enter("[" + std::to_string(index) + "]"); }
    void leave() {
        path_.resize(lengths_.back());
        lengths_.pop_back();
    }
    void number(std::int64_t value) { text(std::to_string(value)); }
    void fraction(double value) {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
        text({digits.data(), end.ptr});
    }
    void text(std::string_view value) { lines_.push_back(path_ + "=" + std::string(value)); }
    [[nodiscard]] std::vector<std::string> take() { return std::move(lines_); }

  private:
    std::string path_;
    std::vector<std::size_t> lengths_;
    std::vector<std::string> lines_;
};

// Takes the values of each field together, whichever element has them: the number of fields is that
// of the records' lists, however much a world holds.
class DigitSink {
  public:
    void enter(const char* name) {
        lengths_.push_back(path_.size());
        if (!path_.empty()) path_ += '.';
        path_ += name;
    }
    void enter(std::size_t) { lengths_.push_back(path_.size()); }
    void enter(const std::string&) { lengths_.push_back(path_.size()); }
    void leave() {
        path_.resize(lengths_.back());
        lengths_.pop_back();
    }
    void number(std::int64_t value) { field().number(value); }
    void fraction(double value) { field().fraction(value); }
    void text(std::string_view value) { field().text(value); }

    [[nodiscard]] FieldDigits take() {
        static constexpr std::string_view kDigits =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        // All bits of a hash count where it is divided by a prime.
        constexpr std::uint64_t kValues = 61;
        FieldDigits fields{std::move(names_), {}};
        for (const HashSink& hash : hashes_) fields.digits += kDigits[hash.value() % kValues];
        return fields;
    }

  private:
    HashSink& field() {
        const auto [known, isNew] = numbers_.try_emplace(path_, hashes_.size());
        if (isNew) {
            names_.push_back(path_);
            hashes_.emplace_back();
        }
        return hashes_[known->second];
    }

    std::string path_;
    std::vector<std::size_t> lengths_;
    std::unordered_map<std::string, std::size_t> numbers_;
    std::vector<std::string> names_;
    std::vector<HashSink> hashes_;
};

// Goes over all fields of a run. Pointers into the tables count by what they name there.
template <class Sink>
class FieldWalk {
  public:
    explicit FieldWalk(Sink& sink) : sink_(sink) {}

    void run(const RunState& run) {
        field("screen", run.screen);
        field("globals", run.scripts.globals());
        field("random", run.scripts.random());
        field("world", run.world);
        // Arrays may hold each other, and themselves: each counts once, where it was met first.
        for (std::size_t next = 0; next < arrays_.size(); ++next) array(next, *arrays_[next]);
    }

  private:
    template <class Name, class Value>
    void field(const Name& name, const Value& value) {
        sink_.enter(name);
        walk(value);
        sink_.leave();
    }

    template <HasFields Record>
    void walk(const Record& record) {
        static_assert(listsAllFields<Record>(), "a field is missing in the record's list");
        Record::visitFields(
            record, [this](const char* name, const auto& value) { this->field(name, value); });
    }

    // By its bits as a signed number, so that "none" of a size is -1 on every machine.
    template <std::integral Integer>
    void walk(Integer value) {
        if constexpr (std::is_same_v<Integer, bool>) {
            sink_.number(value ? 1 : 0);
        } else {
            sink_.number(std::int64_t{static_cast<std::make_signed_t<Integer>>(value)});
        }
    }
    // Which NaN an operation gives differs between processors.
    void walk(std::floating_point auto value) {
        constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
        sink_.fraction(std::isnan(value) ? kNoNumber : static_cast<double>(value));
    }
    template <class Enum>
    requires std::is_enum_v<Enum>
    void walk(Enum value) { sink_.number(static_cast<std::int64_t>(value)); }
    void walk(const std::string& value) { sink_.text(value); }
    void walk(const ScriptName& value) { sink_.text(value); }
    void walk(const ScriptText& value) { sink_.text(value); }

    void walk(const generated::Character* model) { sink_.text(model ? model->name : ""); }
    void walk(const generated::Animation* animation) {
        sink_.text(animation ? animation->name : "");
    }
    void walk(const generated::Frame* frame) { sink_.text(frame ? frame->sprite : ""); }
    void walk(const generated::Spawn* spawn) { sink_.number(spawn ? spawn->id : -1); }
    void walk(const generated::Stage* stage) { sink_.text(stage ? stage->sourceFile : ""); }

    void walk(const generated::DrawMethod& draw) {
        static_assert(fields::count<generated::DrawMethod>() == 13, "a field is missing below");
        walk(draw.enabled);
        for (const float part : {draw.scaleX, draw.scaleY, draw.shiftX}) walk(part);
        for (const bool part : {draw.flipX, draw.flipY, draw.flipRotate}) walk(part);
        for (const int part : {draw.alphaMode, draw.remap, draw.fillColor, draw.tintMode,
                               draw.tintColor, draw.rotate}) {
            walk(part);
        }
    }

    template <std::ranges::range Values>
    void walk(const Values& values) {
        elements(values);
    }
    void walk(const EntityList& entities) {
        field("nextHandle", entities.nextHandle());
        elements(entities);
    }
    void elements(const auto& values) {
        walk(values.size());
        std::size_t index = 0;
        for (const auto& value : values) field(index++, value);
    }
    void walk(const AnimationPlayer& player) {
        field("name", player.animation());
        field("frame", player.frameIndex());
        field("tick", player.tick());
        field("finished", player.finished());
    }
    // Two states that give the same next numbers are taken for the same.
    void walk(std::mt19937 random) {
        // The generator's own type is as wide as the system likes.
        walk(std::uint64_t{random()});
        walk(std::uint64_t{random()});
    }

    void walk(const ScriptContext& context) {
        static_assert(fields::count<ScriptContext>() == 5, "a variable is missing below");
        field("local", context.local);
        field("entity", context.entity);
        field("other", context.other);
        field("player", context.player);
        field("playerIndex", context.playerIndex);
    }
    void walk(const ScriptVariables& variables) {
        std::vector<const ScriptVariables::value_type*> sorted;
        for (const auto& variable : variables) sorted.push_back(&variable);
        std::ranges::sort(
            sorted, {}, [](const auto* variable) -> const std::string& { return variable->first; });
        walk(sorted.size());
        for (const auto* variable : sorted) {
            const std::string& name = variable->first;
            walk(name);
            field(name, variable->second);
        }
    }
    void walk(const ScriptValue& value) {
        walk(value.index());
        std::visit([this](const auto& held) { this->walk(held); }, value);
    }
    void walk(std::monostate) {}
    void walk(const ScriptArrayPtr& array) {
        if (!array) return walk(-1);
        const auto [known, isNew] = numbers_.try_emplace(array.get(), arrays_.size());
        if (isNew) arrays_.push_back(array.get());
        walk(known->second);
    }
    void array(std::size_t number, const ScriptArray& array) {
        sink_.enter("arrays");
        sink_.enter(number);
        field("indexed", array.indexed);
        field("named", array.named);
        field("namedOrder", array.namedOrder);
        field("cursor", array.cursor);
        sink_.leave();
        sink_.leave();
    }

    Sink& sink_;
    std::unordered_map<const ScriptArray*, std::size_t> numbers_;
    std::deque<const ScriptArray*> arrays_;
};

template <class Sink>
Sink walked(const RunState& run) {
    Sink sink;
    FieldWalk(sink).run(run);
    return sink;
}

}  // namespace

std::uint64_t worldHash(const RunState& run) {
    return walked<HashSink>(run).value();
}

std::string hashDigits(std::uint64_t hash) {
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(hash));
    return digits.data();
}

FieldDigits fieldDigits(const RunState& run) {
    return walked<DigitSink>(run).take();
}

std::string firstOtherField(const RunState& run, std::string_view digits) {
    const FieldDigits own = fieldDigits(run);
    const auto [at, other] = std::ranges::mismatch(own.digits, digits);
    if (at == own.digits.end()) return {};
    return own.names[static_cast<std::size_t>(at - own.digits.begin())];
}

std::vector<std::string> fieldLines(const RunState& run) {
    return walked<LineSink>(run).take();
}

std::string firstDifference(const RunState& a, const RunState& b) {
    const std::vector<std::string> first = fieldLines(a);
    const std::vector<std::string> second = fieldLines(b);
    const auto [at, other] = std::ranges::mismatch(first, second);
    if (at == first.end() && other == second.end()) return {};
    const std::string none = "(nothing)";
    return (at == first.end() ? none : *at) + " and " + (other == second.end() ? none : *other);
}

}  // namespace port
