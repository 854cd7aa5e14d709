#include "support/Output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "support/Error.h"

void OccupyStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // The lowest number that is free is taken: that of the closed stream.
        if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDONLY) != stream) {
            throw ToolError("can't open /dev/null");
        }
    }
}

void FlushOutput() {
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        throw ToolError(std::string("can't print: ") +
                        (errno == 0 ? "the output is broken" : std::strerror(errno)));
    }
}
