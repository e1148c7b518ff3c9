#pragma once

// What the values of all scripts weigh. Values live in the variables of actors, of the game and of
// arrays, wherever those are held, so each counts its own memory: a script that keeps more and more
// is stopped, whichever way it keeps it.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace port {

// Bytes held by texts, arrays and variables of this process, about. Like its scripts, for one
// thread.
class ScriptMemory {
  public:
    [[nodiscard]] static std::size_t bytes() { return bytes_; }
    static void take(std::size_t bytes) { bytes_ += bytes; }
    static void giveBack(std::size_t bytes) { bytes_ -= bytes; }

  private:
    static inline std::size_t bytes_ = 0;
};

// For the containers of values.
template <class T>
struct ScriptAllocator {
    using value_type = T;

    ScriptAllocator() = default;
    template <class Other>
    ScriptAllocator(const ScriptAllocator<Other>&) {}  // NOLINT(google-explicit-constructor)

    T* allocate(std::size_t count) {
        T* const memory = std::allocator<T>().allocate(count);
        ScriptMemory::take(count * sizeof(T));  // NOLINT(bugprone-sizeof-expression)
        return memory;
    }
    void deallocate(T* memory, std::size_t count) {
        ScriptMemory::giveBack(count * sizeof(T));  // NOLINT(bugprone-sizeof-expression)
        std::allocator<T>().deallocate(memory, count);
    }
    template <class Other>
    bool operator==(const ScriptAllocator<Other>&) const {
        return true;
    }
};

// The name of a variable or of an element. Scripts make them up, and as long as they like.
class ScriptName : public std::string {
  public:
    ScriptName(std::string text) : std::string(std::move(text)) { ScriptMemory::take(size()); }
    ScriptName(std::string_view text) : ScriptName(std::string(text)) {}
    ScriptName(const char* text) : ScriptName(std::string(text)) {}
    ScriptName(const ScriptName& other) : std::string(other) { ScriptMemory::take(size()); }
    ScriptName& operator=(const ScriptName& other) {
        ScriptMemory::take(other.size());
        ScriptMemory::giveBack(size());
        std::string::operator=(other);
        return *this;
    }
    ~ScriptName() { ScriptMemory::giveBack(size()); }
};

// Lets maps of names be asked by a view.
struct ScriptNameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
        return std::hash<std::string_view>()(text);
    }
};

// Holds a node that counts its own holders, in the size of one pointer.
template <class Node>
class ScriptShared {
  public:
    ScriptShared() = default;
    // The first holder of a new node.
    explicit ScriptShared(Node* node) : node_(node) { hold(); }
    ScriptShared(const ScriptShared& other) : node_(other.node_) { hold(); }
    ScriptShared(ScriptShared&& other) noexcept : node_(std::exchange(other.node_, nullptr)) {}
    ScriptShared& operator=(ScriptShared other) noexcept {
        std::swap(node_, other.node_);
        return *this;
    }
    ~ScriptShared() {
        if (node_ != nullptr && --node_->holders == 0) delete node_;
    }

    [[nodiscard]] Node* get() const { return node_; }
    Node* operator->() const { return node_; }
    Node& operator*() const { return *node_; }
    explicit operator bool() const { return node_ != nullptr; }
    [[nodiscard]] std::size_t use_count() const { return node_ == nullptr ? 0 : node_->holders; }
    bool operator==(const ScriptShared& other) const { return node_ == other.node_; }

  private:
    void hold() const {
        if (node_ != nullptr) ++node_->holders;
    }
    Node* node_ = nullptr;
};

}  // namespace port
