#pragma once
/// The standard output, whose failures are failures of the tool.

/// Gives a standard stream that is closed a place where nothing can be written. Else the next
/// file that is opened would take its number, and what is printed would go there.
void OccupyStandardStreams();

/// Sends on what was printed. Raises when it can't be written, as on a full disk or to a
/// program that has ended.
void FlushOutput();
