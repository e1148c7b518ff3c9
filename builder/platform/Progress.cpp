#include "platform/Progress.hpp"

#include <iostream>
#include <utility>

#include "platform/Console.hpp"

namespace tindrel {
namespace {

constexpr std::chrono::milliseconds kRedrawInterval{100};
// One less than the narrowest usual terminal: a wrapped line could not be rewritten in place.
constexpr std::size_t kLineWidth = 79;

void rewriteLine(std::string line) {
    line.resize(kLineWidth, ' ');
    std::cerr << '\r' + line + '\r';
}

}  // namespace

Progress::Progress(std::string_view label, std::uint64_t total)
    : label_(label),
      total_(total),
      visible_(errorStreamIsTerminal()),
      // A step that is over at once shows nothing.
      nextDraw_(std::chrono::steady_clock::now() + kRedrawInterval) {}

Progress::~Progress() {
    if (drawn_) rewriteLine({});
}

void Progress::advance(std::uint64_t steps) {
    done_ += steps;
    if (!visible_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < nextDraw_) return;
    nextDraw_ = now + kRedrawInterval;
    draw();
}

void Progress::draw() {
    std::string line = label_ + ' ' + std::to_string(done_);
    if (total_ != 0) {
        line += '/' + std::to_string(total_) + " (" + std::to_string(done_ * 100 / total_) + "%)";
    }
    rewriteLine(std::move(line));
    drawn_ = true;
}

}  // namespace tindrel
