// COG templates (*.cgt): a header that lists the template's parameters as a small table, then a
// COG body with "<%name%>" placeholders in it. Reading the header and generating the COG text are
// pure functions of the file's bytes.
//
// The file, line by line (lines end in CR LF):
//   line 1     the column count N (at least 2), a bare decimal number;
//   line 2     the N column titles, separated by commas;
//   lines 3... one parameter row per line, N fields: default value, name, further columns;
//   end line   "end" in any letter case; it may follow the titles directly;
//   the body   every byte after the end line's CR LF.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace templates {

// One parameter row of the header.
struct Parameter {
    std::string value;               // field 0: the default value
    std::string name;                // field 1: the placeholder's name
    std::vector<std::string> fields; // all N fields, fields[0] == value and fields[1] == name
};

struct Template {
    int columns = 0;                 // N
    std::vector<std::string> titles; // N column titles
    std::vector<Parameter> rows;     // in file order
    // The header's length: the sum over the header lines of (the line's length + 2), line 1
    // counted as the length of the column count's decimal text.
    long ilen = 0;
};

// A template that cannot be read: the 1-based line at fault and what is wrong with it.
struct TemplateError {
    long line = 0;
    std::string problem;
    std::string describe() const; // "line L: problem"
};

struct ReadResult {
    Template tmpl;       // meaningful when ok()
    TemplateError error; // meaningful when !ok()
    bool ok() const { return error.problem.empty(); }
};

// Reads the header of a template file. Malformed files (a column count that is not a bare whole
// number or is below 2, a titles line or row with fewer than N fields, a repeated parameter name
// (letter case ignored), no end line) give an error naming the line.
ReadResult readTemplate(std::string_view bytes);

// Splits a line into n fields: field 0 is the text before the first comma, fields 1 to n-2 the
// texts between successive commas, field n-1 everything after the (n-1)th comma, further commas
// included. Nothing is trimmed. Fields missing from a line with too few commas are left empty.
// Fills elements 0 to n-1 of fields, growing it when it is shorter.
void SplitFields(int n, std::vector<std::string>& fields, std::string_view line);

// The number of fields the line holds when split by commas: the commas plus one.
int fieldCount(std::string_view line);

// The body: the bytes after the first ilen bytes (empty when the file is shorter).
std::string_view templateBody(std::string_view bytes, long ilen);

// Replaces every occurrence of "<%" + name + "%>" (letter case ignored) in text by value, each
// search going on right after the value just inserted, so a value is never searched itself.
std::string replacePlaceholder(std::string_view text, std::string_view name, std::string_view value);

// A parameter name and the value to put in its placeholders.
using Assignment = std::pair<std::string, std::string>;

// The generated COG text: the body of the template file, then for each assignment in order every
// placeholder of its name replaced by its value. An assignment whose placeholder does not occur
// changes nothing.
std::string generate(std::string_view bytes, long ilen, const std::vector<Assignment>& assignments);

// The assignments of a template's rows with their default values, in row order.
std::vector<Assignment> defaultAssignments(const Template& tmpl);

// Widths of the parameter table's columns, given the width of each title and of the whole list,
// in one unit. Each column but the last is as wide as its title; the last takes the list's width
// less the earlier columns less reserve. The running sum of the earlier widths is rounded to a
// whole number after each addition, halves to the even one.
std::vector<double> columnWidths(const std::vector<double>& titleWidths, double listWidth, double reserve);

} // namespace templates
