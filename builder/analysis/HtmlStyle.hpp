#pragma once

// The style sheet of the HTML report.

#include <string_view>

namespace tindrel {

inline constexpr std::string_view kHtmlStyle = R"css(
:root {
  color-scheme: light dark;
  --paper: #f4f2ed; --card: #fffefb; --sunk: #ece9e1; --ink: #1d1e22; --soft: #5b5e66;
  --line: #dedad0; --accent: #2f56b0; --shade: 0 1px 2px rgb(40 34 20 / 7%);
  --ok: #2a8a5f; --ok-ink: #1a6645; --ok-wash: #dff0e6;
  --part: #d69a1c; --part-ink: #7d5506; --part-wash: #f9ecc9;
  --odd: #7f56c2; --odd-ink: #5f3a9e; --odd-wash: #ebe2f8;
  --bad: #cb4237; --bad-ink: #a02a21; --bad-wash: #fbe1dd;
  --skip: #9a9ca3; --skip-ink: #5b5e66; --skip-wash: #e6e5e1;
  --check-a: #e6e3da; --check-b: #f1eee6;
  --mono: ui-monospace, "Cascadia Mono", "SF Mono", Menlo, Consolas, "DejaVu Sans Mono", monospace;
}
@media (prefers-color-scheme: dark) {
  :root {
    --paper: #131519; --card: #1b1e24; --sunk: #24282f; --ink: #e9e8e3; --soft: #a0a4ae;
    --line: #2d323b; --accent: #8fb0ff; --shade: none;
    --ok: #3fae7c; --ok-ink: #80d9b0; --ok-wash: #17352a;
    --part: #dba633; --part-ink: #f0c766; --part-wash: #3a2e10;
    --odd: #9d7ae0; --odd-ink: #c9b1f5; --odd-wash: #2d2444;
    --bad: #e0604f; --bad-ink: #ff9d8f; --bad-wash: #45201c;
    --skip: #6f747f; --skip-ink: #b4b8c1; --skip-wash: #2b2f37;
    --check-a: #22262d; --check-b: #292e36;
  }
}
* { box-sizing: border-box; }
html { scroll-behavior: smooth; scroll-padding-top: 1.5rem; -webkit-text-size-adjust: 100%; }
@media (prefers-reduced-motion: reduce) { html { scroll-behavior: auto; } }
body { margin: 0; background: var(--paper); color: var(--ink);
  font: 16px/1.55 system-ui, -apple-system, "Segoe UI", Roboto, "Helvetica Neue", sans-serif; }
a { color: var(--accent); text-underline-offset: .18em; text-decoration-thickness: 1px; }
a:hover { text-decoration-thickness: 2px; }
:focus-visible { outline: 2px solid var(--accent); outline-offset: 2px; border-radius: 4px; }
code, .mono { font-family: var(--mono); font-size: .875em; overflow-wrap: break-word; }
h1, h2, h3, p, ul, ol, dl, dd, figure { margin: 0; padding: 0; }
ul, ol { list-style: none; }
.to-main { position: absolute; left: -999px; }
.to-main:focus { left: 1rem; top: 1rem; z-index: 9; background: var(--card); padding: .5rem 1rem; }

.page { display: grid; grid-template-columns: 13.5rem minmax(0, 1fr); gap: 0 3.5rem;
  max-width: 78rem; margin: 0 auto; padding: 0 2.5rem 5rem; }
nav { position: sticky; top: 0; align-self: start; max-height: 100vh; overflow: auto;
  padding: 3.25rem 0 2rem; font-size: .92rem; }
nav p { font-size: .75rem; letter-spacing: .09em; text-transform: uppercase; color: var(--soft);
  padding: 0 .7rem .6rem; }
nav a { display: flex; justify-content: space-between; gap: .75rem; padding: .36rem .7rem;
  border-radius: 7px; color: var(--ink); text-decoration: none; }
nav a:hover { background: var(--sunk); }
nav b { font-weight: 500; color: var(--soft); font-variant-numeric: tabular-nums; }

.hero { padding: 3.25rem 0 0; }
.kicker { font-size: .75rem; letter-spacing: .09em; text-transform: uppercase; color: var(--soft); }
h1 { font-size: clamp(2rem, 5vw, 3.1rem); line-height: 1.1; letter-spacing: -.022em;
  font-weight: 700; margin: .35rem 0 .8rem; overflow-wrap: anywhere; }
.verdict { font-size: clamp(1.08rem, 2.1vw, 1.32rem); line-height: 1.5; max-width: 44rem; }
.bar { display: flex; gap: 3px; height: 1rem; margin: 1.9rem 0 .35rem; }
.bar i { min-width: 4px; background: var(--tone); }
.bar i:first-child { border-radius: 6px 0 0 6px; }
.bar i:last-child { border-radius: 0 6px 6px 0; }
.bar i:only-child { border-radius: 6px; }
.tiles { display: grid; grid-template-columns: repeat(auto-fit, minmax(9.2rem, 1fr)); gap: 0 1.5rem; }
.tiles li { padding: .75rem 0 .4rem; }
.tiles b { display: block; font-size: 1.65rem; line-height: 1.15; font-weight: 650;
  letter-spacing: -.015em; font-variant-numeric: tabular-nums; }
.tiles span { display: flex; align-items: baseline; gap: .45rem; font-size: .92rem; }
.tiles span::before { content: ""; flex: none; width: .6rem; height: .6rem; border-radius: 2px;
  background: var(--tone); }
.tiles small { color: var(--soft); font-size: .75rem; letter-spacing: .03em; padding-left: 1.05rem; }
.facts { display: flex; flex-wrap: wrap; gap: .3rem 1.75rem; margin-top: 1.4rem; padding-top: 1rem;
  border-top: 1px solid var(--line); font-size: .92rem; }
.facts div { display: flex; gap: .4rem; }
.facts dt { color: var(--soft); }
.facts dd { font-variant-numeric: tabular-nums; font-weight: 550; }
.ok { --tone: var(--ok); --tone-ink: var(--ok-ink); --wash: var(--ok-wash); }
.part { --tone: var(--part); --tone-ink: var(--part-ink); --wash: var(--part-wash); }
.odd { --tone: var(--odd); --tone-ink: var(--odd-ink); --wash: var(--odd-wash); }
.bad { --tone: var(--bad); --tone-ink: var(--bad-ink); --wash: var(--bad-wash); }
.skip { --tone: var(--skip); --tone-ink: var(--skip-ink); --wash: var(--skip-wash); }

section { padding-top: 3.5rem; }
h2 { font-size: 1.5rem; letter-spacing: -.015em; line-height: 1.25; font-weight: 680; }
h3 { font-size: 1rem; font-weight: 640; margin: 1.7rem 0 .6rem; display: flex; gap: .6rem;
  align-items: baseline; }
h3 small { font-weight: 400; color: var(--soft); font-size: .875rem; }
.lead { color: var(--soft); max-width: 44rem; margin: .35rem 0 1.2rem; }
.good, .warn { border-radius: 10px; padding: .8rem 1rem; margin-top: .8rem; }
.good { background: var(--ok-wash); color: var(--ok-ink); }
.warn { background: var(--part-wash); color: var(--part-ink); overflow-wrap: anywhere; }
.rest { color: var(--soft); font-size: .9rem; padding: .6rem 0 0; }

.list { background: var(--card); border: 1px solid var(--line); border-radius: 12px;
  box-shadow: var(--shade); overflow: hidden; }
.list > * + * { border-top: 1px solid var(--line); }
summary { cursor: pointer; list-style: none; }
summary::-webkit-details-marker { display: none; }
.row > summary, .plain { display: grid; gap: .2rem 1rem; align-items: center; padding: .62rem 1rem;
  grid-template-columns: .7rem minmax(8rem, 1.5fr) 7.6rem minmax(3rem, 1fr) 5.5rem; }
.row > summary::before { content: ""; width: .42rem; height: .42rem; margin-left: .1rem;
  border: solid var(--soft); border-width: 0 1.5px 1.5px 0; transform: rotate(-45deg); }
.row[open] > summary::before { transform: rotate(45deg) translate(-.1rem, -.1rem); }
.row > summary:hover { background: var(--sunk); }
.row > summary:focus-visible { outline-offset: -2px; }
.name { font-family: var(--mono); font-size: .92rem; font-weight: 600; overflow-wrap: anywhere; }
.name.text { font-family: inherit; font-weight: 500; font-size: .96rem; }
.chip { justify-self: start; padding: .08rem .55rem; border-radius: 99px; background: var(--wash);
  color: var(--tone-ink); font-size: .72rem; font-weight: 600; letter-spacing: .03em;
  white-space: nowrap; }
.meter { display: block; height: .4rem; border-radius: 3px; background: var(--sunk); }
.meter i { display: block; height: 100%; min-width: 3px; border-radius: 3px; background: var(--tone); }
.count { text-align: right; font-variant-numeric: tabular-nums; font-weight: 600; }
.count small { display: block; font-weight: 400; color: var(--soft); font-size: .78rem; line-height: 1.2; }
.body { padding: .25rem 1rem 1.1rem 2.7rem; font-size: .94rem; }
.body > p { max-width: 46rem; }
.body > p + p { margin-top: .5rem; }
.body > .places + p { margin-top: .75rem; }
.forms { margin: .5rem 0 0 1.2rem; list-style: disc; color: var(--soft); }
.summary { margin-bottom: .9rem; }
.hint { color: var(--tone-ink); }
.places { margin-top: .75rem; display: grid; gap: .34rem; }
.places li { display: grid; grid-template-columns: minmax(0, 22rem) minmax(0, 1fr); gap: 0 1rem; }
.places .at { color: var(--soft); font-variant-numeric: tabular-nums; font-size: .88rem; }
.calls { margin-top: .6rem; display: grid; gap: .3rem; }
.calls li { display: grid; grid-template-columns: minmax(0, 19rem) minmax(0, 1fr); gap: 0 1rem; }
.calls .at { color: var(--soft); font-size: .88rem; overflow-wrap: break-word; }
.plain { grid-template-columns: minmax(0, 1.4fr) minmax(0, 1fr) 5.5rem; }
.plain .at { color: var(--soft); font-size: .88rem; overflow-wrap: break-word; }

.gallery { display: grid; grid-template-columns: repeat(auto-fill, minmax(10rem, 1fr)); gap: 1rem; }
.gallery.wide { grid-template-columns: repeat(auto-fill, minmax(15rem, 1fr)); }
.gallery figure { background: var(--card); border: 1px solid var(--line); border-radius: 12px;
  overflow: hidden; box-shadow: var(--shade); }
.shot { height: 10rem; padding: .6rem; display: flex; align-items: center; justify-content: center;
  background: repeating-conic-gradient(var(--check-a) 0 25%, var(--check-b) 0 50%) 0 0 / 16px 16px;
  color: var(--soft); font-size: .82rem; text-align: center; }
.shot img { max-width: 100%; max-height: 100%; width: 100%; height: 100%; object-fit: contain;
  image-rendering: pixelated; }
.shot { overflow: hidden; }
.shot img.cut { flex: none; max-width: none; max-height: none; object-fit: none; }
.wide .shot { padding: 0; height: 9.5rem; }
.wide .shot img { object-fit: cover; object-position: 0 100%; }
figcaption { padding: .6rem .8rem .7rem; font-size: .82rem; line-height: 1.4; color: var(--soft); }
figcaption b { display: block; color: var(--ink); font-size: .95rem; font-weight: 600;
  overflow-wrap: anywhere; }
figcaption .left { color: var(--part-ink); }
.fold { margin-top: 1rem; }
.fold > summary { font-weight: 640; padding: .5rem 0; display: flex; gap: .6rem; align-items: baseline; }
.fold > summary::before { content: ""; flex: none; width: .42rem; height: .42rem;
  border: solid var(--soft); border-width: 0 1.5px 1.5px 0; transform: rotate(-45deg) translate(-.1rem, -.05rem); }
.fold[open] > summary::before { transform: rotate(45deg) translate(-.2rem, -.05rem); }
.fold > summary small { font-weight: 400; color: var(--soft); font-size: .875rem; }
.fold > summary:hover { color: var(--accent); }

.scroll { overflow-x: auto; }
table { width: 100%; border-collapse: collapse; font-size: .92rem; background: var(--card); }
th { text-align: left; font-weight: 600; font-size: .78rem; color: var(--soft); }
th, td { padding: .4rem 1rem; border-bottom: 1px solid var(--line); vertical-align: baseline; }
tr:last-child td { border-bottom: 0; }
td.n, th.n { text-align: right; font-variant-numeric: tabular-nums; }
footer { margin-top: 4rem; padding-top: 1.1rem; border-top: 1px solid var(--line);
  color: var(--soft); font-size: .88rem; }

@media (max-width: 60rem) {
  html { scroll-padding-top: 3.8rem; }
  .page { display: block; padding: 0 1.15rem 3rem; }
  nav { z-index: 5; margin: 0 -1.15rem; padding: .45rem .6rem; overflow-x: auto;
    background: var(--paper); border-bottom: 1px solid var(--line); }
  nav p { display: none; }
  nav ol { display: flex; }
  nav a { white-space: nowrap; padding: .4rem .6rem; gap: .4rem; }
  .hero { padding-top: 1.6rem; }
  section { padding-top: 2.75rem; }
}
@media (max-width: 40rem) {
  .tiles { grid-template-columns: repeat(2, 1fr); }
  .row > summary { grid-template-columns: .7rem minmax(0, 1fr) 4.6rem; padding: .7rem .85rem; }
  .row > summary .chip { grid-column: 2; grid-row: 2; }
  .row > summary .meter { display: none; }
  .row > summary .count { grid-column: 3; grid-row: 1 / span 2; }
  .body { padding: .1rem .85rem 1rem 2.55rem; }
  .places li, .calls li { grid-template-columns: minmax(0, 1fr); }
  .plain { grid-template-columns: minmax(0, 1fr) 4.6rem; padding: .65rem .85rem; }
  .plain .at { grid-column: 1; grid-row: 2; }
  .plain .count { grid-row: 1 / span 2; grid-column: 2; }
  .gallery { grid-template-columns: repeat(2, minmax(0, 1fr)); gap: .7rem; }
  .gallery.wide { grid-template-columns: minmax(0, 1fr); }
}
@media print {
  nav { display: none; }
  .page { display: block; }
}
)css";

}  // namespace tindrel
