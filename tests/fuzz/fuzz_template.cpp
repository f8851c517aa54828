// The template reader and generation on any file: a header that fits the file, and generation
// with the defaults and with values that hold placeholders.
#include "templates/template.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(template) {
    const std::string_view extraValue = in.piece();
    const std::string_view bytes = in.rest();
    const templates::ReadResult r = templates::readTemplate(bytes);
    std::vector<templates::Assignment> assignments{{"door", std::string(extraValue)}};
    if (r.ok()) {
        const templates::Template& t = r.tmpl;
        fuzzing::require(t.columns >= 2 && static_cast<int>(t.titles.size()) == t.columns,
                         "columns and titles");
        fuzzing::require(t.ilen >= 0, "negative header length");
        for (const auto& row : t.rows)
            fuzzing::require(static_cast<int>(row.fields.size()) == t.columns && row.fields[0] == row.value &&
                                 row.fields[1] == row.name,
                             "a row's fields");
        const auto defaults = templates::defaultAssignments(t);
        assignments.insert(assignments.end(), defaults.begin(), defaults.end());
        std::vector<double> titleWidths(static_cast<std::size_t>(t.columns), 100.5);
        fuzzing::require(templates::columnWidths(titleWidths, 5000, 1000).size() == titleWidths.size(),
                         "widths");
    } else {
        fuzzing::require(r.error.line >= 1, "an error without its line");
    }
    const std::string text = templates::generate(bytes, r.ok() ? r.tmpl.ilen : 0, assignments);
    (void)text;
    std::vector<std::string> fields;
    templates::SplitFields(1 + static_cast<int>(extraValue.size() % 6), fields, bytes.substr(0, 200));
}
