#include "MovParserLib/MovStatus.h"

#include <cstdio>

namespace Orvex::MovParserLib {

namespace {

struct DomainText
{
    const char *prefix;
    const char *const *names;
    Status count;
    const char *unknown; // what a code beyond the table prints
};

constexpr const char *kParserNames[] = {
    "ERROR_OKAY",       "ERROR_PARSER",      "ERROR_MISSING_MOVIE_HEADER", "ERROR_FILE_NOT_COMPATIBLE",
    "ERROR_INVALID_OP", "ERROR_INVALID_ARG", "ERROR_MEM_ALLOC",            "ERROR_OP_FAILED"};

constexpr const char *kReaderNames[] = {"ERROR_OKAY",
                                        "ERROR_FILE_PATH",
                                        "ERROR_FILE_OPEN",
                                        "ERROR_FILE_READ",
                                        "ERROR_FILE_POSITION",
                                        "ERROR_READ_FAILED",
                                        "ERROR_READ_IN_PROGRESS",
                                        "ERROR_BUFFER_ALLOC",
                                        "ERROR_GENERAL_ALLOC",
                                        "ERROR_WAITING_ON_NONREQUEST",
                                        "ERROR_MULTIPLE_CONCURRENT_READ_ON_FILE_BUFFER",
                                        "ERROR_ATTEMPT_TO_READ_PAST_EOF",
                                        "ERROR_BAD_MESSAGE"};

constexpr const char *kWriterNames[] = {"ERROR_OKAY",
                                        "ERROR_FILE_PATH",
                                        "ERROR_FILE_OPEN",
                                        "ERROR_FILE_WRITE",
                                        "ERROR_FILE_POSITION",
                                        "ERROR_WRITE_FAILED",
                                        "ERROR_WRITE_IN_PROGRESS",
                                        "ERROR_BUFFER_ALLOC",
                                        "ERROR_GENERAL_ALLOC",
                                        "ERROR_WAITING_ON_NONREQUEST",
                                        "ERROR_MULTIPLE_CONCURRENT_WRITE_ON_FILE_BUFFER",
                                        "ERROR_BAD_MESSAGE"};

constexpr const char *kBufferNames[] = {"ERROR_OKAY",
                                        "ERROR_MEM_ALLOC",
                                        "ERROR_ALLOCATOR_EXISTS",
                                        "ERROR_BUFFER_EMPTY",
                                        "ERROR_BUFFER_FULL",
                                        "ERROR_BUFFER_OVER_FLOW",
                                        "ERROR_BUFFER_UNDER_FLOW",
                                        "ERROR_INVALID_ARG",
                                        "ERROR_MALFORMED_OBJECT"};

constexpr const char *kAtomNames[] = {"ERROR_OKAY",
                                      "ERROR_INVALID_ARG",
                                      "ERROR_INVALID_RET_VAL",
                                      "ERROR_ATOM_NOT_FOUND",
                                      "ERROR_ATOM_READ_FAILED",
                                      "ERROR_ATOM_WRITE_FAILED",
                                      "ERROR_WRONG_ATOM_TYPE",
                                      "ERROR_MEM_ALLOC",
                                      "ERROR_INVALID_OP",
                                      "ERROR_UNIMPLEMENTED_FUNCTION",
                                      "ERROR_MALFORMED_ATOM",
                                      "ERROR_ZERO_SIZE_ATOM"};

template <Status N>
constexpr DomainText textOf(const char *prefix, const char *const (&names)[N], const char *unknown)
{
    return {prefix, names, N, unknown};
}

DomainText textOf(quint32 domain)
{
    constexpr const char *unknown = "Unknown error code";
    switch (domain) {
    case FileReaderDomain:
        return textOf("FileReader::Error  >>  ", kReaderNames, unknown);
    case FileWriterDomain:
        return textOf("FileWriter::Error  >>  ", kWriterNames, unknown);
    case BufferDomain:
        return textOf("GenericBuffer::Error  >>  ", kBufferNames, unknown);
    case AtomDomain:
        return textOf("MovAtom::Error  >>  ", kAtomNames, unknown);
    default:
        // Intended: here a code beyond the table prints the prefix alone. The walk relies on it
        // when it passes on a value that already carries another domain.
        return textOf("MovParser::Error  >>  ", kParserNames, "");
    }
}

} // namespace

Status report(quint32 domain, Status code)
{
    if (domain == ParserDomain && code == 0)
        return 0;
    const DomainText text = textOf(domain);
    std::fprintf(stderr, "%s%s\n", text.prefix, code < text.count ? text.names[code] : text.unknown);
    return domain | code;
}

void reportOnly(quint32 domain, Status code)
{
    report(domain, code);
}

} // namespace Orvex::MovParserLib
