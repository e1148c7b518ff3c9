#include "analysis/CommandRegistry.hpp"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "analysis/ClosestWord.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

using enum CompatStatus;

enum class Support : std::uint8_t { kNone, kParserOnly, kBoth };

struct Row {
    std::string_view words;  // lower case, parted by one blank: aliases share a verdict
    CompatStatus status;
    Support support;
    std::string_view impact;
};

// A word that stands on two rows has the verdict of the earlier one.
constexpr Row kRows[] = {
    {"name type health speed speedf subtype", kSupported, Support::kBoth,
     "Model property applied to the generated entity."},
    {"runspeed jumpspeed jumpspeedf jumpheight jumpmove", kSupported, Support::kBoth,
     "Model property applied to the generated entity."},
    {"anim frame delay offset loop move movez movea sound flipframe", kSupported, Support::kBoth,
     "Animation command executed by the native animation player."},
    {"blast burn shock", kPartial, Support::kBoth,
     "Legacy special attack boxes preserve their attack type, drop flag and basic reaction "
     "selection. Palette and specialized damage effects remain partial."},
    {"landframe", kSupported, Support::kBoth,
     "Ground contact resumes the configured landing frame through its remaining delays and spawns "
     "the optional named dust model once."},
    {"shadow", kSupported, Support::kBoth,
     "OpenBOR shadow 0-6 is rendered under native actors, using original shadow sprites when "
     "present and a safe fallback otherwise."},
    {"diesound lifespan", kSupported, Support::kBoth,
     "Native entity lifecycle executes lifespan expiry and death audio."},
    {"energycost mpcost mponly", kSupported, Support::kBoth,
     "Animation activation checks and consumes MP/HP by resource mode without splitting the cost. "
     "Type disable rules apply; deferred costs are controlled separately by nocost."},
    {"nocost", kPartial, Support::kBoth,
     "Melee energy cost is deferred until an animation with contact finishes; misses are free. "
     "Projectile ownership, smartbomb and resource changes during deferred cost remain partial."},
    {"defense", kPartial, Support::kBoth,
     "Per-attack-type damage, pain, knockdown resistance, block power/threshold, chip ratio and "
     "block resource routing are translated to native runtime rules with models.txt global "
     "fallbacks."},
    {"knockdowncount", kSupported, Support::kBoth,
     "Model knockdown meter threshold is consumed by the native hit/knockdown runtime."},
    {"bbox attack attack1 attack2 attack3 fall dropv pausetime guardcost noblock jugglecost "
     "attack.tag attack.block.cost attack.block.penetrate attack.reaction.pause.time",
     kSupported, Support::kBoth,
     "Per-frame hit/attack data. attack4+ is parsed; only 1-3 are bound to default controls."},
    {"attackone", kPartial, Support::kBoth,
     "attackone is preserved per animation and enforced for player, coop and projectile attacks; "
     "enemy multi-target parity when attackone=0 remains partial."},
    {"drawmethod", kPartial, Support::kBoth,
     "Scale/flip/rotate/shift/fill, alpha modes 1-6 and tint mode/color are executed by the "
     "software compositor. Indexed palette LUT remap remains partial."},
    {"nodrawmethod", kSupported, Support::kBoth,
     "Resets inherited frame drawmethod state to the native default renderer."},
    {"blockratio mpblock nochipdeath", kSupported, Support::kBoth,
     "models.txt global blocking rules are applied natively: quarter chip damage, MP-first chip "
     "routing and optional non-lethal chip damage."},
    {"walkoffmove", kSupported, Support::kBoth,
     "Native ledge falls apply walkoffmove X/Z air-control flags separately from knockdown falls, "
     "mirroring jumpmove-style control intent."},
    {"jugglepoints grabdistance grabin knife bomb project blockodds blockpain thold blockthreshold "
     "guardpoints guardrate blockback",
     kSupported, Support::kBoth,
     "Combat/projectile/blocking model properties used by the native runtime."},
    {"stealth", kSupported, Support::kBoth,
     "Native AI target acquisition respects target stealth versus attacker perception; visual "
     "rendering is unchanged as in OpenBOR."},
    {"candamage hostile", kSupported, Support::kBoth,
     "Canonical textual OpenBOR type masks are parsed and applied independently to native "
     "intentional targeting and hit permission, including entity-vs-entity combat and ScriptVM "
     "findtarget."},
    {"aggression", kSupported, Support::kBoth,
     "Enemy aggression adjusts native attack reaction delay: positive values react faster and "
     "negative values react slower."},
    {"aiattack aimove projectilehit", kPartial, Support::kBoth,
     "OpenBOR AI/projectile metadata influences native movement, attack selection and projectile "
     "targets; uncommon legacy bit-layout modes remain partial."},
    {"cantgrab notgrab", kSupported, Support::kBoth,
     "OpenBOR v7533 legacy grab tuning: value 2 sets grab force to -999999; other values set "
     "resistance to 1. Later force/resistance directives override in source order."},
    {"nograb grabforce grabresistance grab_resistance antigrab throwdamage throwdist throwheight",
     kPartial, Support::kBoth,
     "Native grab/throw resolution consumes these model values; uncommon legacy grab edge cases "
     "remain partial."},
    {"bounce", kPartial, Support::kBoth,
     "Bounce count is applied to projectile and falling-entity ground contacts."},
    {"bouncefactor", kSupported, Support::kBoth,
     "Bounce velocity multiplier is preserved without the former native upper clamp for "
     "projectiles and falling entities."},
    {"subject_to_gravity subjecttogravity", kSupported, Support::kBoth,
     "Controls free-fall gravity for runtime entities/projectiles while explicit knockdown "
     "launches still fall by attack reaction."},
    {"antigravity", kSupported, Support::kBoth,
     "Legacy antigravity is normalized to a gravity multiplier and applied to actors and "
     "projectiles."},
    {"nopain", kSupported, Support::kBoth,
     "Suppresses native pain reactions while still allowing damage and knockdown."},
    {"nodrop", kSupported, Support::kBoth,
     "Prevents automatic weapon drops caused by damage, knockdown or death."},
    {"subject_to_hole", kSupported, Support::kBoth,
     "Controls whether actors are affected by stage holes."},
    {"subject_to_wall", kPartial, Support::kBoth,
     "Players, coop and entities share trapezoid wall collision with world-height checks and "
     "wall-over-hole masking. Landing on wall tops and dynamic platforms remain partial."},
    {"nomove", kPartial, Support::kBoth,
     "Legacy movement and facing constraints: blocks voluntary/AI movement and fall reactions, "
     "with advanced OpenBOR movement exceptions remaining partial."},
    {"offscreenkill", kSupported, Support::kBoth,
     "Entities beyond the configured offscreen distance are removed by the native runtime."},
    {"noquake", kSupported, Support::kBoth, "Suppresses quakeframe screen shake for the model."},
    {"nodieblink", kPartial, Support::kParserOnly,
     "Legacy death-blink flag is parsed. The compact runtime does not emulate every historical "
     "blink cadence."},
    {"falldie death", kPartial, Support::kBoth,
     "Legacy death/fall mode 0-2 is parsed; exact supported occurrences are refined from model "
     "data, including FALL-then-DEATH mode 2."},
    {"risetime riseattacktype", kPartial, Support::kBoth,
     "Knockdown recovery delay and attack-type-aware rise selection are mapped to the native "
     "recovery runtime."},
    {"fmap", kPartial, Support::kBoth,
     "Freeze palette metadata is preserved and applied for native freeze reactions; exact numeric "
     "fmap occurrences are refined per model."},
    {"remove", kPartial, Support::kBoth,
     "Native projectiles use the legacy remove flag (default 1); remove 0 preserves them after "
     "impact, with per-target hit tracking. Bomb contact selects attack2 and ground contact "
     "selects attack1. Advanced historical hit-ID modes remain partial."},
    {"throw", kPartial, Support::kParserOnly,
     "Legacy throw model flag is preserved; native grab/throw uses "
     "throwdamage/throwdist/throwheight."},
    {"no_adjust_base", kPartial, Support::kParserOnly,
     "Base-adjust metadata is preserved. The native renderer already uses explicit "
     "offsets/altitude, so uncommon legacy base adjustment remains partial."},
    {"jumpframe throwframe shootframe pshotframe tossframe custknife custbomb custpbomb",
     kSupported, Support::kBoth, "Projectile spawn frames."},
    {"seta", kSupported, Support::kBoth,
     "Frame altitude is applied natively and persists with inherited frame state until animation "
     "state changes."},
    {"quakeframe", kSupported, Support::kBoth,
     "Animation frame triggers deterministic native screen shake with loop/intensity metadata."},
    {"hitfx", kSupported, Support::kBoth,
     "Animation-specific hit sound is played when the attack connects."},
    {"damageonlanding", kPartial, Support::kBoth,
     "Landing damage from an attack box is applied once on the victim's first ground contact after "
     "knockdown. Named normal/blast/burn/freeze/shock/steal types are parsed; blast landing mode "
     "and advanced death/defense effects remain partial."},
    {"hitflash attack.effect.hit.flash.model", kSupported, Support::kBoth,
     "Per-frame hit effect model spawns at collision overlap, respects noflash/noatflash and ends "
     "with its animation. Advanced collision flash layers are separate commands."},
    {"flash bflash blockflash attack.effect.block.flash.model attack.effect.hit.flash.disable "
     "noflash noatflash toflip",
     kSupported, Support::kBoth,
     "Model hit/block flash fallbacks, per-frame block effects, incoming override suppression and "
     "effect facing run in the native combat/effect lifecycle."},
    {"modelflag", kPartial, Support::kBoth,
     "Weapon model-copy flags are parsed; no_basic prevents inherited basic animations while "
     "no_weapon/no_script are preserved for compatibility analysis."},
    {"range rangez rangea", kSupported, Support::kBoth,
     "Animation activation ranges feed dynamic combostyle=1 branch selection."},
    {"atchain combostyle combodelay", kPartial, Support::kBoth,
     "Native player/coop combo chains use atchain/combodelay; combostyle=1 selects range branches "
     "from animation range/rangez/rangea metadata. Exotic legacy branch layouts remain partial."},
    {"com cmd", kPartial, Support::kBoth,
     "OpenBOR command sequences use a 128-tick per-player history with press/release, passive hold "
     "min/max, auto hold-trigger, chord grace and sequence grace; weapon models can replace the "
     "active command list."},
    {"followanim followcond", kSupported, Support::kBoth,
     "Follow transitions execute from actual hit/block/lethal/grabbable results using OpenBOR "
     "followcond 1-5 semantics."},
    {"counterframe counterrange", kPartial, Support::kBoth,
     "Counter transitions execute from real hit results and frame windows; uncommon legacy "
     "freeze/unblockable combinations remain partial."},
    {"cancel", kPartial, Support::kBoth,
     "Animation cancel windows, hit requirements and common OpenBOR input tokens are executed "
     "natively."},
    {"weapons weapnum shootnum reload weapon weaponframe weaploss weapon_loss_index "
     "weapon_loss_condition counter typeshot animal",
     kPartial, Support::kBoth,
     "Weapon model swap, limited uses, inherited/overridden weaploss, drop counter and gun "
     "depletion behavior are active. Full model-copy/drop animation edge cases remain partial."},
    {"subentity custentity spawnframe summonframe unsummonframe summonkill", kSupported,
     Support::kBoth,
     "Child entity selection, frame spawning/summoning, screen-relative placement, unsummon and "
     "parent-death cleanup execute natively."},
    {"child_follow_offset_x child_follow_offset_y child_follow_offset_z "
     "child_follow_direction_adjust_config",
     kPartial, Support::kBoth,
     "Child follow/recall positioning executes natively; rare legacy interpolation/direction edge "
     "cases remain partial."},
    {"thinkscript updatescript animationscript takedamagescript didhitscript ondrawscript "
     "onspawnscript ondeathscript onpainscript onfallscript onpain_script onfall_script "
     "takedamage_script didhit_script ondraw_script onspawn_script ondeath_script",
     kPartial, Support::kBoth,
     "Hook is invoked by ScriptVM. Unmapped APIs inside the script stay PARTIAL."},
    {"levelscript", kPartial, Support::kBoth,
     "Level script main() runs once when the native stage loads. Unmapped OpenBOR APIs remain "
     "partial."},
    {"keyscript onmovexscript onmovezscript onentitycollision", kPartial, Support::kBoth,
     "Hook is fired by ScriptVM. Exact legacy event ordering and unmapped APIs remain partial."},
    {"spawnscript", kPartial, Support::kBoth,
     "Spawn-entry script runs after the model onspawn hook with self/spawnx/spawnz/spawny/spawnat "
     "locals."},
    {"onblockzscript onblocksscript onblockwscript onblockoscript didblockscript", kPartial,
     Support::kBoth,
     "Blocking hook is fired by the native collision/block runtime; uncommon legacy ordering "
     "remains partial."},
    {"onblockascript onblockyscript onblockpscript", kPartial, Support::kParserOnly,
     "Blocking hook is parsed, but platform/overhead exact firing remains partial."},
    {"onkillscript", kPartial, Support::kBoth,
     "Runs when a runtime entity is actually removed after its death/removal delay."},
    {"script updatescript", kPartial, Support::kBoth,
     "Legacy/update entity script is executed each runtime entity update. Unmapped APIs remain "
     "partial."},
    {"ondoattack ondoattackscript", kPartial, Support::kBoth,
     "Hook fires when player, coop, enemy or ScriptVM performattack begins an attack."},
    {"onmodelcopy", kPartial, Support::kBoth,
     "onmodelcopy is invoked when a weapon model is applied."},
    {"@script", kPartial, Support::kBoth,
     "Inline source is preserved by model/animation and executed on frame entry with frame and "
     "animhandle locals; unmapped APIs and rare source-order cases remain partial."},
    {"@cmd", kPartial, Support::kBoth,
     "@cmd is bound to the immediately following animation frame and executed by ScriptVM in "
     "source order; unsupported helper APIs remain partial."},
    {"@end_script", kSupported, Support::kBoth,
     "Closes the inline script block whose source is preserved and executed on animation frame "
     "entry; unsupported body APIs are reported separately."},
    {"animation", kSupported, Support::kBoth,
     "Scene animation entries execute natively with original image/GIF path, position, skip policy "
     "and decoded frame timing."},
    {"scene", kPartial, Support::kBoth,
     "levels.txt scene files are attached to the following stage and execute through the native "
     "cutscene player; uncommon scene directives outside music/animation remain partial."},
    {"bossmusic", kSupported, Support::kBoth,
     "Boss music switches on the first boss spawn and its byte offset is mapped to the native loop "
     "return point."},
    {"water", kPartial, Support::kBoth,
     "Legacy water overlay has a native renderer; occurrence validation certifies path + warp "
     "syntax (0-15)."},
    {"rock", kPartial, Support::kBoth,
     "Legacy rock modes have native stage motion; occurrence validation certifies numeric modes "
     "0-3."},
    {"at", kSupported, Support::kBoth,
     "OpenBOR scroll-position trigger is evaluated from the level start (left edge for right/both, "
     "right edge for left); delayed spawn coords remain screen-relative."},
    {"set file z music background panel spawn coords alias flip boss spawn1 direction next",
     kSupported, Support::kBoth, "Stage/spawn command consumed by the generic stage runtime."},
    {"bglayer fglayer frontpanel", kPartial, Support::kBoth,
     "Layer path, floating scroll ratios, offsets, spacing/repeat and foreground depth are "
     "rendered. Water/neon/palette-specific effects remain partial."},
    {"wall platform hole", kPartial, Support::kBoth,
     "Rectangular collision is active. Complex elevation and moving platforms are partial."},
    {"wait", kSupported, Support::kBoth,
     "Stage scrolling pauses at the bound `at` point until all active enemies are defeated."},
    {"group", kSupported, Support::kBoth,
     "Persistent OpenBOR group min/max spawning is enforced: once active enemies drop below min, "
     "eligible enemy spawns refill up to max."},
    {"nojoin canjoin", kPartial, Support::kBoth,
     "Join gating is executed at the authored stage trigger and exposed through the ScriptVM "
     "nojoin variant; native in-progress pad joining is available, while the legacy join-selection "
     "frontend remains partial."},
    {"blockade branch end endlevel scrollx scrollspeed cameratype", kPartial, Support::kBoth,
     "Stage control is mapped to native runtime state; unusual legacy ordering and a few frontend "
     "edge cases remain partial."},
    {"nocheats nodebug", kIgnoredSafely, Support::kBoth,
     "Native port has no legacy cheat/debug option pages, so disabling those menu entries is "
     "already satisfied."},
    {"completebg", kSupported, Support::kBoth,
     "Level-set completebg is propagated into stages and the native frontend renders bgs/complete "
     "(or a text fallback) before advancing."},
    {"ifcomplete", kSupported, Support::kBoth,
     "Level-set completion requirements are persisted and enforced by the native campaign "
     "selector."},
    {"noshare", kSupported, Support::kBoth,
     "Separate per-player lives and credit pools are executed by the native multiplayer runtime, "
     "saved per slot and consumed independently."},
    {"item map health score", kSupported, Support::kBoth, "Spawn properties."},
    {"video videomode hresolution vresolution", kSupported, Support::kBoth,
     "Logical resolution is detected from video.txt instead of assuming 320x240."},
    {"palette alternatepal remap colourmap colormap", kPartial, Support::kBoth,
     "Palette/remap is applied at runtime from image or ACT palette references. "
     "Duplicate-color/index-only edge cases remain partial."},
    {"load", kSupported, Support::kBoth,
     "models.txt load entry registers the external model name and source file used by native "
     "spawns."},
    {"know", kSupported, Support::kBoth,
     "models.txt know entry registers the model name/path in the native registry while asset "
     "decoding remains lazy until the model is actually used."},
    {"mp", kSupported, Support::kBoth,
     "Model maximum MP is emitted and consumed by player, coop, entities, blocking and energy-cost "
     "rules."},
    {"select", kPartial, Support::kParserOnly,
     "Recognized menu command; selection metadata remains partially mapped."},
    {"icon", kSupported, Support::kBoth,
     "Default HUD icon path and current-palette flag are applied by the native HUD for players and "
     "popup enemy/boss status."},
    {"icondie nolife lifeposition nameposition iconposition", kSupported, Support::kBoth,
     "Native HUD applies death icon, life visibility and popup HUD positions directly."},
    {"lbarsize lifebarsize", kSupported, Support::kBoth,
     "Global lifebar dimensions from lifebar.txt are consumed directly by the native HUD."},
    {"lifebarstatus", kSupported, Support::kBoth,
     "Popup HUD width/height, border suppression, absolute/ratio fill, orientation and "
     "per-component border/shadow/graph/backfill layer order execute natively."},
    {"order", kSupported, Support::kBoth,
     "Panel order strings select and repeat panel definitions by letter, preserving "
     "case-insensitive order and concatenating repeated order directives."},
    {"2pitem", kPartial, Support::kNone,
     "Two-player conditional item drop is recognized; conditional stage-item substitution remains "
     "partial."},
    {"lives credits", kSupported, Support::kBoth,
     "Level-set lives/credits initialize native continue pools; noshare selects independent "
     "per-player pools while shared campaigns use the common pool."},
    {"forcedirection", kSupported, Support::kBoth,
     "Per-animation attack facing reaction is preserved: -2 left, -1 opposite attacker, 0 "
     "unchanged, 1 attacker-facing, 2 right."},
    {"dropframe", kSupported, Support::kBoth,
     "Airborne animations jump forward to the configured frame when vertical velocity crosses the "
     "apex."},
    {"alpha", kSupported, Support::kBoth,
     "Model-level OpenBOR blend modes 0-6 are applied by the native software compositor; per-frame "
     "drawmethod alpha still takes precedence."},
    {"setlayer", kSupported, Support::kBoth,
     "Model render depth override is applied relative to the stage Z base while normal actors "
     "remain Z-sorted."},
    {"subject_to_screen", kSupported, Support::kBoth,
     "Entity screen-bound movement flag is parsed and applied by the native actor runtime."},
    {"spawn2 spawn3 spawn4", kSupported, Support::kBoth,
     "Additional player start coordinates are parsed and used for co-op spawn, stage transition "
     "and respawn."},
    {"setweap", kSupported, Support::kBoth,
     "Stage weapon index is parsed and applied to player/co-op loadout on stage start."},
    {"projectile", kSupported, Support::kBoth,
     "Legacy projectile hit-mask alias is parsed through the same native target-mask path as "
     "projectilehit."},
    {"running", kPartial, Support::kParserOnly,
     "Legacy running speed/jump metadata is parsed. Native run speed is active; the full "
     "historical running-jump move/land matrix remains partial."},
    {"gfxshadow", kPartial, Support::kParserOnly,
     "Legacy projected-shadow selector is parsed. The native renderer provides actor shadows but "
     "not every historical gfxshadow projection mode."},
    {"dust", kPartial, Support::kParserOnly,
     "Model dust references for fall/land/jump are parsed; animation-specific land dust is active, "
     "while all model-level automatic dust triggers remain partial."},
    {"facing", kSupported, Support::kBoth,
     "Legacy forced facing modes are applied continuously: normal, force right, force left, or "
     "follow stage direction."},
    {"pbombframe", kPartial, Support::kParserOnly,
     "Projectile-bomb trigger frame/delay is parsed per animation; complete historical smart-bomb "
     "timing remains partial."},
    {"holdblock", kPartial, Support::kParserOnly,
     "Hold-block policy is parsed. Native blocking is active, while exact legacy hold/release "
     "input arbitration remains partial."},
    {"chargetime", kPartial, Support::kParserOnly,
     "Charge-time metadata is parsed per animation; exact legacy charge-input timing remains "
     "partial."},
    {"riseinv", kPartial, Support::kParserOnly,
     "Post-rise invulnerability duration is parsed; exact blink/no-blink legacy presentation "
     "remains partial."},
    {"subject_to_minz subject_to_maxz", kSupported, Support::kBoth,
     "Per-model Z boundary flags independently control minimum/maximum stage-Z clamping for "
     "players, co-op and runtime entities."},
    {"subject_to_obstacle subject_to_platform", kPartial, Support::kParserOnly,
     "OpenBOR movement-subject flag is parsed; native terrain collision covers the common case but "
     "exact per-flag historical terrain precedence remains partial."},
    {"cameraoffset light shadowcolor shadowalpha settime notime", kPartial, Support::kParserOnly,
     "Stage presentation/timing directive is parsed into generated stage metadata; exact legacy "
     "camera/light/shadow/time presentation remains partial."},
    {"noslow", kIgnoredSafely, Support::kBoth,
     "Legacy engine slowdown suppression is unnecessary in the fixed-step native runtime."},
    {"nodropen", kIgnoredSafely, Support::kBoth,
     "Legacy drop-in policy is recognized; the native frontend uses its own deterministic "
     "join/respawn policy."},
    {"totalscore steal showrushbonus scoreformat rushbonus rush recharge p2rush p2mp p1rush p1mp "
     "otg olbarsize offscreen_noatk_factor none nomaxrushreset nohit mpbarsize maxrises "
     "maxindexedvars maxglobalvars maxfollows maxentityvars maxscriptvars maxcancels lifebonus "
     "height escapehits colormagic clearbonus camera ajspecial",
     kIgnoredSafely, Support::kBoth,
     "Recognized legacy OpenBOR global/frontend directive; the native runtime uses dynamic storage "
     "or its own resolution-aware presentation for this field."},
    {"makeinv", kSupported, Support::kBoth,
     "Spawn invulnerability metadata is emitted; positive values protect the spawned actor for the "
     "configured legacy interval."},
    {"grabback", kSupported, Support::kBoth,
     "Grab render ordering is emitted so the grabber can remain behind the held target."},
    {"grabfinish", kSupported, Support::kBoth,
     "Grab actions honor the model grab-finish lock before a throw/next action is accepted."},
    {"throwframewait", kSupported, Support::kBoth,
     "Legacy throw release frame metadata is emitted and retained by the runtime."},
    {"fastattack", kSupported, Support::kBoth,
     "Fast-attack metadata is emitted and shortens AI post-reaction attack delay."},
    {"playshotno", kSupported, Support::kBoth,
     "Legacy no-ammo shot animation token is preserved with the generated model for "
     "projectile/weapon fallback selection."},
    {"maxplayers", kSupported, Support::kBoth,
     "Level-set maximum player count is consumed by the native frontend and clamped to the "
     "four-player runtime limit."},
    {"blocked", kSupported, Support::kBoth,
     "Stage blocked flag is recognized by the stage-control layer and prevents backward camera "
     "release while active."},
    {"stop silence", kSupported, Support::kBoth,
     "Scene control directive is consumed by the native cutscene player (stop terminates the "
     "scene; silence suppresses scene music)."},
    {"blackbox whitebox color25 color50 color100 color200 color300 color400 color500", kSupported,
     Support::kBoth, "Legacy HUD color directive is parsed by the runtime HUD configuration."},
    {"disablehof", kIgnoredSafely, Support::kBoth,
     "Hall-of-fame display is intentionally omitted by the native frontend, so disabling it is "
     "already satisfied."},
    {"disablegameover", kPartial, Support::kParserOnly,
     "Legacy game-over policy is recognized; exact no-game-over campaign transition semantics "
     "remain partial."},
    {"alwaysupdate", kPartial, Support::kParserOnly,
     "Global alwaysupdate script policy is recognized; exact update behavior while paused/frontend "
     "states remains partial."},
    {"noreflect", kPartial, Support::kParserOnly,
     "Projectile reflection opt-out is recognized; the current native runtime has no full "
     "reflection subsystem yet."},
    {"renamekey", kSupported, Support::kBoth,
     "Legacy key label override is parsed from menu.txt and displayed by the native controls "
     "frontend."},
    {"disablekey", kSupported, Support::kBoth,
     "Legacy disabled controls are parsed from menu.txt; unsupported legacy-only buttons remain "
     "hidden from the compact native controls frontend."},
    {"maxfreespecials maxattacks maxattacktypes maxwalks maxidles", kIgnoredSafely, Support::kBoth,
     "Legacy fixed-table capacity directive is unnecessary because the native port uses "
     "dynamically sized generated tables."},
    {"skipselect", kSupported, Support::kBoth,
     "Level-set skipselect 0/1 is preserved and controls whether native Character Select is "
     "entered before the set."},
    {"colourselect colorselect", kIgnoredSafely, Support::kBoth,
     "Legacy palette-selection frontend switch is recognized; native character selection derives "
     "available palettes directly from generated model data."},
    {"nolost versusdamage spdirection lifescore credscore noaircancel autoland", kIgnoredSafely,
     Support::kBoth,
     "Legacy global gameplay/frontend policy is recognized; the compact native runtime already "
     "uses the corresponding fixed policy for this port."},
    {"cansave", kSupported, Support::kBoth,
     "Level-set cansave is generated into stage metadata and gates native save writes."},
    {"timeloc timeicon hiscorebg loadingbg loadingbg2 nosame continuescore", kIgnoredSafely,
     Support::kBoth,
     "Legacy frontend/HUD layout directive is recognized; the native frontend owns this "
     "presentation and does not require the original fixed-coordinate field."},
    {"p1smenu p1score p1namej p1lifex p1lifen p1life p1icon p2smenu p2score p2namej p2lifex "
     "p2lifen p2life p2icon p3smenu p3score p3namej p3lifex p3lifen p3life p3icon e1name e1life "
     "e1icon e2name e2life e2icon e3name e3life e3icon",
     kIgnoredSafely, Support::kBoth,
     "Legacy absolute HUD coordinate is catalogued; the native HUD uses resolution-aware anchors "
     "instead of fixed 320x240 coordinates."},
    {"bgspeed", kIgnoredSafely, Support::kBoth,
     "Legacy background auto-scroll hint is recognized; stage layer scroll ratios remain "
     "authoritative in the native renderer."},
    {"colourdepth", kIgnoredSafely, Support::kBoth,
     "Native renderer is RGBA internally; legacy indexed colour depth does not require a separate "
     "runtime mode."},
    {"comment # musicloop", kIgnoredSafely, Support::kBoth, ""},
};

constexpr Row kNumberedAttack = {"", kSupported, Support::kBoth,
                                 "Numbered attack collision boxes preserve damage type and run "
                                 "through native damage, defense, reaction and combo rules."};
constexpr Row kNumberedMap = {
    "", kSupported, Support::kBoth,
    "Legacy spawn palette shorthand mapN is normalized to the same palette index as map N."};
constexpr Row kSomeScript = {"", kPartial, Support::kParserOnly,
                             "Script-related command recorded without a dedicated runtime hook."};
constexpr Row kUncatalogued = {
    "", kUnknown, Support::kNone,
    "Command is not in the central registry. It is logged and does not abort conversion."};

using Index = std::unordered_map<std::string_view, const Row*>;

template <typename Visit>
void forEachWord(Visit visit) {
    for (const Row& row : kRows) {
        std::string_view rest = row.words;
        while (!rest.empty()) {
            const std::size_t blank = std::min(rest.find(' '), rest.size());
            visit(rest.substr(0, blank), row);
            rest.remove_prefix(std::min(blank + 1, rest.size()));
        }
    }
}

Index indexRows() {
    Index index;
    forEachWord([&](std::string_view word, const Row& row) { index.try_emplace(word, &row); });
    return index;
}

// "attack12", "map7": the stem with a number behind it.
bool isNumbered(std::string_view key, std::string_view stem) {
    return key.size() > stem.size() && key.substr(0, stem.size()) == stem &&
           std::all_of(key.begin() + static_cast<std::ptrdiff_t>(stem.size()), key.end(), isDigit);
}

const Row& findRow(std::string_view key) {
    static const Index kIndex = indexRows();
    const auto found = kIndex.find(key);
    if (found != kIndex.end()) return *found->second;
    if (isNumbered(key, "attack")) return kNumberedAttack;
    if (isNumbered(key, "map")) return kNumberedMap;
    if (key.find("script") != std::string_view::npos) return kSomeScript;
    return kUncatalogued;
}

}  // namespace

std::string_view compatStatusName(CompatStatus status) {
    switch (status) {
        case kSupported:
            return "SUPPORTED";
        case kPartial:
            return "PARTIAL";
        case kUnsupported:
            return "UNSUPPORTED";
        case kIgnoredSafely:
            return "IGNORED_SAFELY";
        case kUnknown:
            break;
    }
    return "UNKNOWN";
}

CommandRule lookupCommand(std::string_view command) {
    const bool lower =
        std::none_of(command.begin(), command.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
    const Row& row = lower ? findRow(command) : findRow(toLower(command));
    return {row.status, row.support != Support::kNone, row.support == Support::kBoth, row.impact};
}

std::vector<std::string_view> registryWords() {
    std::vector<std::string_view> words;
    forEachWord([&](std::string_view word, const Row&) { words.push_back(word); });
    return words;
}

std::string_view closestCommand(std::string_view command) {
    ClosestWord closest(command);
    forEachWord([&](std::string_view word, const Row&) { closest.offer(word); });
    return closest.found();
}

}  // namespace tindrel
