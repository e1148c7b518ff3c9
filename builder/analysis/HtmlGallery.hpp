#pragma once

// The characters and stages of a game with their own pictures, as sections of the HTML report.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "analysis/AssetFinder.hpp"
#include "analysis/HtmlPage.hpp"
#include "analysis/HtmlText.hpp"
#include "platform/OutputFile.hpp"
#include "reader/GameReader.hpp"

namespace tindrel {

class HtmlGallery {
  public:
    // `openLines` counts the issues of each file by its path relative to the project root, in
    // generic form.
    HtmlGallery(HtmlPage& page, GameReader& game, AssetFinder& assets, const DataLinks& links,
                const std::unordered_map<std::string, std::uint64_t>& openLines)
        : page_(page),
          out_(page.out()),
          game_(game),
          assets_(assets),
          links_(links),
          openLines_(openLines) {}

    void writeCharacters();
    void writeStages();

  private:
    struct Sprite {
        const NativePath* file = nullptr;
        const FrameDef* frame = nullptr;
    };

    [[nodiscard]] Sprite spriteOf(const ModelDef& model);
    [[nodiscard]] const NativePath* pictureOf(const StageDef& stage);
    [[nodiscard]] std::string spriteUrl(const std::filesystem::path& file);
    void writeCharacterGroup(const std::string& type, const std::vector<const ModelDef*>& models,
                             bool open, std::size_t& left);
    void writeStage(const StageDef& stage);
    void writePicture(const NativePath* file, const std::string& url, std::string_view alt,
                      const FrameDef* frame);
    void writeCaption(std::string_view name, const std::string& facts,
                      const std::string& sourceFile);

    HtmlPage& page_;
    OutputFile& out_;
    GameReader& game_;
    AssetFinder& assets_;
    const DataLinks& links_;
    const std::unordered_map<std::string, std::uint64_t>& openLines_;
    std::uint64_t embeddedBytes_ = 0;
};

}  // namespace tindrel
