#pragma once

// What the HTML report says of scripts: those that break off, what they ask for, and the animation
// commands.

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "analysis/HtmlPage.hpp"
#include "analysis/ProjectAnalysis.hpp"
#include "analysis/ScriptUses.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

class HtmlScripts {
  public:
    HtmlScripts(HtmlPage& page, const ProjectScan& project, const ProjectAnalysis& analysis,
                GameReader& game)
        : page_(page),
          out_(page.out()),
          analysis_(analysis),
          uses_(findScriptUses(project, analysis, game)) {}

    // What a few names cost the whole game, in sentences.
    void writeConsequences();
    // The sections on scripts and animation commands.
    void write();

  private:
    // What one missing helper, or one fault of helpers, costs.
    struct Cost;
    // Animation commands of one verdict.
    struct Verdict;

    [[nodiscard]] static std::vector<Cost> costsOf(const ProjectAnalysis& analysis);
    [[nodiscard]] static std::vector<Verdict> verdictsOf(const ProjectAnalysis& analysis);

    void writeCost(const Cost& cost, std::uint64_t most);
    void writeBrokenScripts();
    void writeBrokenScript(const BrokenScript& broken, std::uint64_t most);
    void writeNames();
    void writeName(const std::string& name, const ScriptUses& uses, std::uint64_t scripts,
                   std::uint64_t most);
    void writeKeys();
    void writeAnimationCommands();
    void writeVerdict(const Verdict& verdict, std::uint64_t most);
    void writeFindings(const std::string& name);
    void writePlaces(const ScriptUses& uses);

    HtmlPage& page_;
    OutputFile& out_;
    const ProjectAnalysis& analysis_;
    std::map<std::string, ScriptUses, std::less<>> uses_;
};

}  // namespace tindrel
