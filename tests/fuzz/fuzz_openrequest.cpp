// The request a second start sends to the running program, in pieces of any size: the outcome
// does not depend on how the bytes are cut, a complete request is exactly the one sent for its
// path, and nothing beyond a path's worth of bytes is kept.
#include "app/openrequest.h"
#include "tests/fuzz/fuzztarget.h"

#include <string>
#include <vector>

TESSARY_FUZZ_TARGET(openrequest) {
    std::vector<std::size_t> cuts;
    for (std::size_t n = in.byte() % 8; n > 0; --n) cuts.push_back(static_cast<std::size_t>(in.number(5000)));
    const std::string_view bytes = in.rest();

    app::OpenRequestDecoder whole;
    whole.feed(bytes);
    app::OpenRequestDecoder pieces;
    std::size_t at = 0;
    for (const std::size_t cut : cuts) {
        const std::size_t end = std::min(bytes.size(), std::max(at, cut));
        pieces.feed(bytes.substr(at, end - at));
        at = end;
    }
    pieces.feed(bytes.substr(at));

    using State = app::OpenRequestDecoder::State;
    fuzzing::require(whole.state() == pieces.state() && whole.path() == pieces.path() &&
                         whole.problem() == pieces.problem(),
                     "the outcome depends on how the bytes arrive");
    fuzzing::require(whole.path().size() <= app::kMaxRequestPath, "a path longer than allowed");
    if (whole.state() == State::Complete)
        fuzzing::require(app::encodeOpenRequest(whole.path()) == bytes, "a request other than the one sent");
    if (whole.state() == State::Refused)
        fuzzing::require(whole.path().empty(), "a path kept from a refused request");
    fuzzing::require((whole.state() == State::Refused) == !whole.problem().empty(),
                     "a refusal without a reason");
}
