// Inputs of hostile size: a script of nothing but message handlers (each declared, labelled and
// commented) through the explorer build and tessary-cli's outline, and a template with a great
// many parameters. Each runs at two sizes five times apart: the time should grow about five-fold.
#include "bench/core/texts.h"
#include "cli/json.h"
#include "cog/explorer.h"
#include "templates/template.h"

#include <map>

namespace {

const std::string& handlers(int count) {
    static std::map<int, std::string> made;
    std::string& text = made[count];
    if (text.empty()) {
        std::string declarations, code;
        for (int i = 0; i < count; ++i) { // step by step: GCC's optimiser warns about "a" + b + "c"
            const std::string number = std::to_string(i);
            declarations.append("message m").append(number).append("\r\n");
            code.append("m")
                .append(number)
                .append(":\r\n  // step ")
                .append(number)
                .append("\r\n  return;\r\n");
        }
        text = "# handlers\r\nsymbols\r\n" + declarations + "end\r\ncode\r\n" + code + "end\r\n";
    }
    return text;
}

const std::string& parameters(int count) {
    static std::map<int, std::string> made;
    std::string& file = made[count];
    if (file.empty()) {
        file = "3\r\nValue,Name,Description\r\n";
        for (int i = 0; i < count; ++i) file += "1.0,param" + std::to_string(i) + ",a value\r\n";
        file += "end\r\n# <%param0%>\r\n";
    }
    return file;
}

void BM_Explorer_Handlers(benchmark::State& state) {
    const std::string& text = handlers(static_cast<int>(state.range(0)));
    std::size_t nodes = 0;
    for (auto _ : state) nodes = cog::buildExplorer(text, "many.cog", cog::symbolTypes()).tree.count();
    state.counters["nodes"] = static_cast<double>(nodes);
    benchtexts::addBaseline(state, text);
}

void BM_Outline_Handlers(benchmark::State& state) { // the build and the plain tree it prints
    const std::string& text = handlers(static_cast<int>(state.range(0)));
    std::size_t printed = 0;
    for (auto _ : state)
        printed = cli::plainTree(cog::buildExplorer(text, "many.cog", cog::symbolTypes()).tree).size();
    state.counters["out_bytes"] = static_cast<double>(printed);
    benchtexts::addBaseline(state, text);
}

void BM_TemplateRead_Rows(benchmark::State& state) {
    const std::string& file = parameters(static_cast<int>(state.range(0)));
    std::size_t rows = 0;
    for (auto _ : state) rows = templates::readTemplate(file).tmpl.rows.size();
    if (rows != static_cast<std::size_t>(state.range(0))) state.SkipWithError("the template did not read");
    benchtexts::addBaseline(state, file);
}

} // namespace

BENCHMARK(BM_Explorer_Handlers)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Outline_Handlers)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TemplateRead_Rows)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond);
