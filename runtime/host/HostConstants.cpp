// Constants by name. Names of animations and types are the words themselves; their numbers never
// surface.

#include <cmath>

#include "Commands.hpp"
#include "EntityRules.hpp"
#include "HostFunctions.hpp"
#include "KeyTable.hpp"

namespace port::host {
namespace {

struct NumberRow {
    std::string_view name;
    double value;
};

// The kinds of values, as "typeof" tells them.
constexpr double kVtEmpty = 0;
constexpr double kVtInteger = 1;
constexpr double kVtDecimal = 2;
constexpr double kVtPointer = 5;
constexpr double kVtText = 6;

struct WordRow {
    std::string_view name;
    const char* word;
};

constexpr auto kNumbers = sortedTable(std::to_array<NumberRow>({
                                          {"flag_moveleft", SK_LEFT},
                                          {"flag_moveright", SK_RIGHT},
                                          {"flag_moveup", SK_UP},
                                          {"flag_movedown", SK_DOWN},
                                          {"flag_attack", SK_ATTACK},
                                          {"flag_attack1", SK_ATTACK},
                                          {"flag_attack2", SK_ATTACK2},
                                          {"flag_attack3", SK_ATTACK3},
                                          {"flag_attack4", SK_ATTACK4},
                                          {"flag_jump", SK_JUMP},
                                          {"flag_special", SK_SPECIAL},
                                          {"flag_start", SK_START},
                                          {"flag_esc", SK_ESC},

                                          {"direction_left", 0},
                                          {"direction_right", 1},

                                          {"aiattack1_normal", 0},
                                          {"aiattack1_long", kAiLong},
                                          {"aiattack1_melee", kAiMelee},
                                          {"aiattack1_noattack", kAiNoAttack},
                                          {"aiattack1_always", kAiAlways},
                                          {"aiattack2_dodge", kAiDodge},
                                          {"aiattack2_dodgemove", kAiDodgeMove},

                                          {"aimove1_none", 0},
                                          {"aimove1_normal", 1},
                                          {"aimove1_chase", 2},
                                          {"aimove1_chasez", kAiChaseZ},
                                          {"aimove1_chasex", kAiChaseX},
                                          {"aimove1_avoid", kAiAvoid},
                                          {"aimove1_avoidz", kAiAvoidZ},
                                          {"aimove1_avoidx", kAiAvoidX},
                                          {"aimove1_wander", kAiWander},
                                          {"aimove1_biker", kAiBiker},
                                          {"aimove1_arrow", kAiArrow},
                                          {"aimove1_star", kAiStar},
                                          {"aimove1_bomb", kAiBomb},
                                          {"aimove1_nomove", kAiNoMove},
                                          {"aimove2_ignoreholes", kAiIgnoreHoles},
                                          {"aimove2_notargetidle", 131072},

                                          {"block_state_active", 1},
                                          {"block_state_native", 2},
                                          {"block_state_ignore_chance", 4},
                                          {"block_state_ignore_guard_points", 8},
                                          {"block_state_ignore_direction", 16},
                                          {"block_state_ignore_attack_eligibility", 32},
                                          {"block_state_ignore_blockpain", 64},

                                          {"vt_empty", kVtEmpty},
                                          {"vt_integer", kVtInteger},
                                          {"vt_decimal", kVtDecimal},
                                          {"vt_ptr", kVtPointer},
                                          {"vt_str", kVtText},

                                          {"plane_x", 0},
                                          {"plane_y", 1},
                                          {"plane_z", 2},
                                          {"blend_none", 0},
                                          {"blend_alpha", 1},
                                          {"blend_add", 2},
                                          {"blend_multiply", 3},
                                      }),
                                      &NumberRow::name);

// Names of properties, as the functions for them know them.
constexpr auto kWords = sortedTable(std::to_array<WordRow>({
                                        {"entity_property_hp", "health"},
                                        {"entity_property_health", "health"},
                                        {"entity_property_hp_max", "maxhealth"},
                                        {"entity_property_max_health", "maxhealth"},
                                        {"entity_property_position_x", "x"},
                                        {"entity_property_position_z", "z"},
                                        {"entity_property_position_y", "altitude"},
                                        {"entity_property_altitude", "altitude"},
                                        {"entity_property_direction", "direction"},
                                        {"entity_property_animation", "animation"},
                                        {"entity_property_animation_frame", "animpos"},
                                        {"entity_property_velocity_x", "xdir"},
                                        {"entity_property_velocity_z", "zdir"},
                                        {"entity_property_velocity_y", "tossv"},
                                        {"entity_property_color_map", "colourmap"},
                                        {"entity_property_colourmap", "colourmap"},
                                        {"entity_property_modeldata", "modelptr"},
                                        {"entity_property_model", "modelptr"},
                                        {"entity_property_block_state", "blockstate"},
                                        {"entity_property_guard_points", "guardpoints"},
                                        {"entity_property_exists", "exists"},
                                        {"entity_property_dead", "dead"},

                                        {"model_property_name", "name"},
                                        {"model_property_type", "type"},
                                        {"model_property_subtype", "subtype"},
                                        {"model_property_hp", "health"},
                                        {"model_property_health", "health"},
                                        {"model_property_speed", "speed"},
                                        {"model_property_run_speed", "runspeed"},
                                        {"model_property_grab_distance", "grabdistance"},
                                        {"model_property_juggle_points", "jugglepoints"},
                                        {"model_property_block_odds", "blockodds"},
                                        {"model_property_block_pain", "blockpain"},
                                        {"model_property_block_threshold", "blockthreshold"},
                                        {"model_property_guard_points", "guardpoints"},
                                        {"model_property_guard_rate", "guardrate"},
                                        {"model_property_aggression", "aggression"},
                                        {"model_property_ai_attack", "aiattack"},
                                        {"model_property_ai_move", "aimove"},
                                        {"model_property_candamage", "candamage"},
                                        {"model_property_hostile", "hostile"},
                                        {"model_property_projectilehit", "projectilehit"},
                                        {"model_property_nograb", "nograb"},
                                        {"model_property_grab_force", "grabforce"},
                                        {"model_property_grab_resistance", "grabresistance"},
                                        {"model_property_throw_damage", "throwdamage"},
                                        {"model_property_bounce", "bounce"},
                                        {"model_property_subject_to_gravity", "subject_to_gravity"},

                                        {"level_property_name", "name"},
                                        {"level_property_width", "width"},
                                        {"level_property_height", "height"},
                                        {"level_property_z_min", "zmin"},
                                        {"level_property_z_max", "zmax"},
                                        {"level_property_camera_x", "camerax"},
                                        {"level_property_scroll_speed", "scrollspeed"},
                                        {"level_property_direction", "direction"},
                                        {"level_property_branch", "branch"},
                                    }),
                                    &WordRow::name);

}  // namespace

// Numbers are all of one kind to the machine: whole ones are integers. The handle of nobody is what
// NULL() gives, and so as good as empty.
ScriptValue kindOfValue(HostCall& call) {
    const ScriptValue& value = call.value(0);
    if (const auto* number = std::get_if<double>(&value)) {
        return std::trunc(*number) == *number ? kVtInteger : kVtDecimal;
    }
    if (const auto* handle = std::get_if<std::uintptr_t>(&value)) {
        return *handle == 0 ? kVtEmpty : kVtPointer;
    }
    if (std::holds_alternative<bool>(value)) return kVtInteger;
    if (std::holds_alternative<ScriptText>(value)) return kVtText;
    return std::holds_alternative<std::monostate>(value) ? kVtEmpty : kVtPointer;
}

ScriptValue constant(HostCall& call) {
    const std::string& given = call.text(0);
    for (const std::string_view prefix : {"ani_", "type_"}) {
        if (equalsFolded(std::string_view(given).substr(0, prefix.size()), prefix)) {
            return ScriptText(foldAscii(std::string_view(given).substr(prefix.size())));
        }
    }
    const FoldedKey name(given);
    if (const auto* number = findRow(kNumbers, &NumberRow::name, name)) return number->value;
    if (const auto* word = findRow(kWords, &WordRow::name, name)) return scriptValue(word->word);
    return 0.0;
}

}  // namespace port::host
