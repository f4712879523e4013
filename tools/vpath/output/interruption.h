// SIGINT as a session takes it: it ends the line under way, not the command.
#pragma once

// Thrown by EndIfInterrupted.
struct LineInterrupted {};

// From now on SIGINT is noted, and ends waits for input. Until then it ends the process, as it does
// by itself.
void NoteInterrupts();

// Whether one was noted since the last ForgetInterrupt.
bool IsInterrupted();
void ForgetInterrupt();
void EndIfInterrupted();
