#include "cli/output.h"

#include "cli/commands.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <unistd.h>

namespace cli {

OutputBuffer::int_type OutputBuffer::overflow(int_type ch) {
    if (!drain()) return traits_type::eof();
    if (!traits_type::eq_int_type(ch, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(ch);
        pbump(1);
    }
    return traits_type::not_eof(ch);
}

int OutputBuffer::sync() {
    return drain() ? 0 : -1;
}

bool OutputBuffer::drain() {
    for (const char* p = pbase(); p < pptr() && !error_;) {
        const ssize_t n = ::write(fd_, p, static_cast<std::size_t>(pptr() - p));
        if (n >= 0)
            p += n;
        else if (errno != EINTR)
            error_ = errno;
    }
    setp(buffer_, buffer_ + sizeof buffer_); // after a failure the rest is dropped
    return !error_;
}

int runWithCheckedOutput(int argc, char** argv) {
    OutputBuffer buffer(STDOUT_FILENO);
    std::streambuf* const previous = std::cout.rdbuf(&buffer);
    int status = run(Args(argv, argv + argc));
    std::cout.flush();
    std::cout.rdbuf(previous);
    if (buffer.error() != 0) {
        std::cerr << "tessary-cli: cannot write the output: " << std::strerror(buffer.error()) << "\n";
        status = 2;
    }
    return status;
}

} // namespace cli
