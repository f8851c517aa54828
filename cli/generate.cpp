// tessary-cli generate: the COG text a template generates, or its parameter table.
#include "cli/commands.h"

#include "cog/layout.h"
#include "templates/template.h"

#include <algorithm>
#include <iostream>
#include <optional>

namespace cli {

namespace {

const char* const kGenerateUsage =
    "Usage: tessary-cli generate TEMPLATE [NAME=VALUE]...\n"
    "       tessary-cli generate --list TEMPLATE\n"
    "\n"
    "Writes the COG text that the template file generates to standard output, byte for byte.\n"
    "Each parameter takes the value given as NAME=VALUE (names in any letter case), or else its\n"
    "default from the template. --list prints the template's parameter table instead.\n"
    "\n"
    "Exit status: 0 done; 2 a usage error, an unknown parameter, or a template that cannot be\n"
    "read or is malformed (the message names the file and line).\n";

int usageError(const std::string& message) {
    std::cerr << "tessary-cli: " << message << "\n" << kGenerateUsage;
    return 2;
}

// The table as aligned columns under the template's titles; the last column is not padded.
void printTable(const templates::Template& t) {
    std::vector<std::vector<std::string>> lines;
    lines.push_back(t.titles);
    for (const auto& row : t.rows) lines.push_back(row.fields);
    std::vector<std::size_t> widths(static_cast<std::size_t>(t.columns), 0);
    for (const auto& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], line[i].size());
    for (const auto& line : lines) {
        std::string out;
        for (std::size_t i = 0; i < line.size(); ++i) {
            out += line[i];
            if (i + 1 < line.size()) out += std::string(widths[i] - line[i].size() + 2, ' ');
        }
        std::cout << out << "\n";
    }
}

} // namespace

int runGenerate(const Args& args) {
    bool list = false;
    std::optional<std::string> file;
    std::vector<std::string> settings;
    for (const auto& arg : args) {
        if (arg == "--help" || arg == "-h") {
            std::cout << kGenerateUsage;
            return 0;
        }
        if (arg == "--list") {
            list = true;
        } else if (!file) {
            if (arg.starts_with("--")) return usageError("unknown option '" + arg + "'");
            file = arg;
        } else {
            settings.push_back(arg);
        }
    }
    if (!file) return usageError("no template file given");
    if (list && !settings.empty()) return usageError("--list takes no NAME=VALUE arguments");

    std::string bytes;
    if (!readFile(*file, bytes)) return 2;
    const auto read = templates::readTemplate(bytes);
    if (!read.ok()) {
        std::cerr << "tessary-cli: " << *file << ":" << read.error.line << ": " << read.error.problem << "\n";
        return 2;
    }
    const templates::Template& t = read.tmpl;
    if (list) {
        printTable(t);
        return 0;
    }

    auto assignments = templates::defaultAssignments(t);
    std::vector<bool> given(assignments.size(), false);
    for (const auto& setting : settings) {
        const auto eq = setting.find('=');
        if (eq == std::string::npos) return usageError("expected NAME=VALUE, got '" + setting + "'");
        const std::string_view name = std::string_view(setting).substr(0, eq);
        const auto it = std::find_if(assignments.begin(), assignments.end(),
                                     [&](const auto& a) { return cog::equalText(a.first, name); });
        if (it == assignments.end()) {
            std::string known;
            for (const auto& a : assignments) known += (known.empty() ? "" : ", ") + a.first;
            std::cerr << "tessary-cli: " << *file << " has no parameter '" << name << "'"
                      << (known.empty() ? std::string(" (it has none)") : " (its parameters: " + known + ")")
                      << "\n";
            return 2;
        }
        const auto index = static_cast<std::size_t>(it - assignments.begin());
        if (given[index]) {
            std::cerr << "tessary-cli: the parameter '" << it->first << "' is given twice\n";
            return 2;
        }
        given[index] = true;
        it->second = setting.substr(eq + 1);
    }

    const std::string text = templates::generate(bytes, t.ilen, assignments);
    std::cout.write(text.data(), static_cast<std::streamsize>(text.size()));
    return 0;
}

} // namespace cli
