// The value types of the COG language and the rules that relate them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace language {

enum class Type : std::uint8_t {
    Void, // a verb that returns nothing
    Any,  // accepts and gives anything; also the type of an unknown name
    Bool,
    Int,
    Float, // "flex" too
    Vector,
    String,
    Message,
    Thing,
    Sector,
    Surface,
    Cog,
    Ai,
    Keyframe,
    Material,
    Model,
    Sound,
    Template,
    Player,
    Colormap,
};

// The name a diagnostic prints: "var" for any, "void" for nothing, "float" for flex.
const char* typeName(Type t);

// A symbol type of the symbols section (16 names, "flex" for float); none for another word.
std::optional<Type> symbolType(std::string_view name);
// A type of the verb table: the symbol types, "any", "bool", "player", "colormap", and "nothing"
// for no value.
std::optional<Type> verbType(std::string_view name);

bool isScalar(Type t);         // bool, int, float, any
bool isIdType(Type t);         // any and the types that name an object of the level or a resource
bool isTruthValued(Type t);    // may stand as a condition: the scalars
bool isNumericOperand(Type t); // converts to int or float
bool convertible(Type from, Type to);

} // namespace language
