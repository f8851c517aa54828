#include "language/types.h"

#include "language/text.h"

#include <array>

namespace language {

namespace {

struct NamedType {
    std::string_view name;
    Type type;
};

constexpr std::array kSymbolTypes{NamedType{"int", Type::Int},
                                  NamedType{"float", Type::Float},
                                  NamedType{"flex", Type::Float},
                                  NamedType{"vector", Type::Vector},
                                  NamedType{"string", Type::String},
                                  NamedType{"message", Type::Message},
                                  NamedType{"thing", Type::Thing},
                                  NamedType{"sector", Type::Sector},
                                  NamedType{"surface", Type::Surface},
                                  NamedType{"cog", Type::Cog},
                                  NamedType{"ai", Type::Ai},
                                  NamedType{"keyframe", Type::Keyframe},
                                  NamedType{"material", Type::Material},
                                  NamedType{"model", Type::Model},
                                  NamedType{"sound", Type::Sound},
                                  NamedType{"template", Type::Template}};

constexpr std::array kVerbOnlyTypes{NamedType{"any", Type::Any}, NamedType{"bool", Type::Bool},
                                    NamedType{"player", Type::Player}, NamedType{"colormap", Type::Colormap},
                                    NamedType{"nothing", Type::Void}};

template <class Table> std::optional<Type> lookUp(const Table& table, std::string_view name) {
    for (const NamedType& t : table)
        if (equalsNoCase(name, t.name)) return t.type;
    return std::nullopt;
}

} // namespace

const char* typeName(Type t) {
    static constexpr std::array<const char*, 20> names{
        "void",     "var",   "bool",   "int",      "float",  "vector",  "string",
        "message",  "thing", "sector", "surface",  "cog",    "ai",      "keyframe",
        "material", "model", "sound",  "template", "player", "colormap"};
    return names[static_cast<std::size_t>(t)];
}

std::optional<Type> symbolType(std::string_view name) {
    return lookUp(kSymbolTypes, name);
}

std::optional<Type> verbType(std::string_view name) {
    if (auto t = lookUp(kSymbolTypes, name)) return t;
    return lookUp(kVerbOnlyTypes, name);
}

bool isScalar(Type t) {
    return t == Type::Bool || t == Type::Int || t == Type::Float || t == Type::Any;
}

bool isIdType(Type t) {
    return t == Type::Any || t >= Type::Message;
}

bool isTruthValued(Type t) {
    return isScalar(t);
}

bool isNumericOperand(Type t) {
    return convertible(t, Type::Int);
}

bool convertible(Type from, Type to) {
    if (from == Type::Any || to == Type::Any || from == to) return true;
    return isScalar(to) && (isScalar(from) || isIdType(from));
}

} // namespace language
