#pragma once

// The status values of the whole namespace and the one routine that reports them; constants only,
// usable from any thread.

#include <QtGlobal>

namespace Orvex::MovParserLib {

/// 0 for success; otherwise a code that means something inside one domain, alone or ORed with
/// the domain's base once report() has seen it.
using Status = quint32;

/// Base values of the domains. Every value below FileReaderDomain reports as the parser's own.
enum Domain : quint32 {
    ParserDomain = 0,
    WalkDomain = 1, ///< The parser's domain as the walk over a file passes it.
    FileReaderDomain = 0x10000,
    FileWriterDomain = 0x20000,
    BufferDomain = 0x30000,
    AtomDomain = 0x40000,
};

namespace ParserError {
enum : Status {
    Okay,
    Parser,
    MissingMovieHeader,
    FileNotCompatible,
    InvalidOp,
    InvalidArg,
    MemAlloc,
    OpFailed,
};
} // namespace ParserError

namespace FileReaderError {
enum : Status {
    Okay,
    FilePath,
    FileOpen,
    FileRead,
    FilePosition,
    ReadFailed,
    ReadInProgress,
    BufferAlloc,
    GeneralAlloc,
    WaitingOnNonRequest,
    MultipleConcurrentReadOnFileBuffer,
    AttemptToReadPastEof,
    BadMessage,
};
} // namespace FileReaderError

namespace FileWriterError {
enum : Status {
    Okay,
    FilePath,
    FileOpen,
    FileWrite,
    FilePosition,
    WriteFailed,
    WriteInProgress,
    BufferAlloc,
    GeneralAlloc,
    WaitingOnNonRequest,
    MultipleConcurrentWriteOnFileBuffer,
    BadMessage,
};
} // namespace FileWriterError

namespace BufferError {
enum : Status {
    Okay,
    MemAlloc,
    AllocatorExists,
    BufferEmpty,
    BufferFull,
    BufferOverFlow,
    BufferUnderFlow,
    InvalidArg,
    MalformedObject,
};
} // namespace BufferError

namespace AtomError {
enum : Status {
    Okay,
    InvalidArg,
    InvalidRetVal,
    AtomNotFound,
    AtomReadFailed,
    AtomWriteFailed,
    WrongAtomType,
    MemAlloc,
    InvalidOp,
    UnimplementedFunction,
    MalformedAtom,
    ZeroSizeAtom,
};
} // namespace AtomError

/// Writes the domain's prefix, the code's name and a line end to the standard error stream and
/// returns domain | code. It is called where a failure crosses a layer, so one failure may print
/// several lines. Domain 0 with code 0 prints nothing and returns 0.
Status report(quint32 domain, Status code);

/// As report(), where nobody is left to take the value.
void reportOnly(quint32 domain, Status code);

} // namespace Orvex::MovParserLib
