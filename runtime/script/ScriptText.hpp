#pragma once

// The text of a value: never changed, shared by all that hold it, as small as a pointer.

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "ScriptMemory.hpp"

namespace port {

class ScriptText {
  public:
    ScriptText() = default;
    ScriptText(std::string text) : node_(new Node(std::move(text))) {}
    ScriptText(std::string_view text) : ScriptText(std::string(text)) {}
    ScriptText(const char* text) : ScriptText(std::string(text)) {}

    [[nodiscard]] const std::string& str() const {
        static const std::string kEmpty;
        return node_ ? node_->text : kEmpty;
    }
    operator const std::string&() const { return str(); }
    operator std::string_view() const { return str(); }
    [[nodiscard]] std::size_t size() const { return str().size(); }
    [[nodiscard]] bool empty() const { return str().empty(); }
    [[nodiscard]] const char* c_str() const { return str().c_str(); }

    bool operator==(const ScriptText& other) const {
        return node_ == other.node_ || str() == other.str();
    }
    bool operator==(std::string_view other) const { return str() == other; }
    bool operator==(const std::string& other) const { return str() == other; }
    bool operator==(const char* other) const { return str() == other; }

  private:
    struct Node {
        explicit Node(std::string made) : text(std::move(made)) { ScriptMemory::take(weight()); }
        Node(const Node&) = delete;
        Node& operator=(const Node&) = delete;
        ~Node() { ScriptMemory::giveBack(weight()); }
        [[nodiscard]] std::size_t weight() const { return sizeof(Node) + text.size(); }

        std::size_t holders = 0;
        const std::string text;
    };
    ScriptShared<Node> node_;
};

}  // namespace port
