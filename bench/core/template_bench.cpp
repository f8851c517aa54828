// Template generation with 1,000 parameters, each placeholder in a body of about 100 KB.
#include "bench/core/texts.h"
#include "templates/template.h"

namespace {

constexpr int kParameters = 1000;

const std::string& templateFile() {
    static const std::string file = [] {
        std::string header = "3\r\nValue,Name,Description\r\n";
        std::string body = benchtexts::script(100 * 1024);
        cogtext::Rng rng(7);
        for (int i = 0; i < kParameters; ++i) {
            const std::string name = "param" + std::to_string(i);
            header += std::to_string(i) + "," + name + ",the value of " + name + "\r\n";
            const std::size_t at = body.find("\r\n", rng.below(body.size()));
            body.insert(at == std::string::npos ? body.size() : at, "\t<%" + name + "%>;");
        }
        return header + "end\r\n" + body;
    }();
    return file;
}

void BM_TemplateGenerate_1000(benchmark::State& state) {
    const std::string& file = templateFile();
    std::size_t size = 0;
    for (auto _ : state) {
        const templates::ReadResult r = templates::readTemplate(file);
        if (!r.ok() || r.tmpl.rows.size() != kParameters) {
            state.SkipWithError("the template did not read");
            break;
        }
        size = templates::generate(file, r.tmpl.ilen, templates::defaultAssignments(r.tmpl)).size();
    }
    state.counters["out_bytes"] = static_cast<double>(size);
    benchtexts::addBaseline(state, file);
}

} // namespace

BENCHMARK(BM_TemplateGenerate_1000)->Unit(benchmark::kMillisecond);
