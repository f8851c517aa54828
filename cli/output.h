// Standard output of tessary-cli. Every command writes to std::cout; this buffer passes the bytes
// to the output file and remembers the first write that fails, so that one check, when a command
// flushes and at the end, turns a full disk or a closed output into exit status 2.
#pragma once

#include <streambuf>

namespace cli {

class OutputBuffer : public std::streambuf {
public:
    explicit OutputBuffer(int fd) : fd_(fd) { setp(buffer_, buffer_ + sizeof buffer_); }
    OutputBuffer(const OutputBuffer&) = delete;
    OutputBuffer& operator=(const OutputBuffer&) = delete;
    ~OutputBuffer() override { drain(); }

    // The errno of the first failed write; 0 while every byte has been written.
    int error() const { return error_; }

protected:
    int_type overflow(int_type ch) override;
    int sync() override;

private:
    bool drain(); // writes what the buffer holds; false once a write has failed

    int fd_;
    int error_ = 0;
    char buffer_[1 << 16];
};

// Runs the command line args (the words after the program's name) with std::cout writing to file
// descriptor 1 through an OutputBuffer. The command's exit status, or 2 with a message on stderr
// when its output could not be written.
int runWithCheckedOutput(int argc, char** argv);

} // namespace cli
