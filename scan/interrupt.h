// interrupt.h - signals that end the program, SIGINT, SIGTERM and SIGHUP: the first one lets it end behind a whole
// record, or after two seconds.
#pragma once

// Catches the signals from here on; one that is ignored already, as nohup does with SIGHUP, stays ignored. A second
// signal ends the program at once, and two seconds behind the first one SIGALRM ends it by that: inside a long
// identification, or when nobody reads what it writes. Records that were gathered and not handed over by then are lost.
void CatchInterrupts();

// Whether a signal has come: what is under way is then to be ended.
bool Interrupted();

// Waits until a descriptor has something to read or has reached its end. Returns false at once when a signal has come
// or comes.
bool WaitForInput(int descriptor);

// When a signal has come, ends the program by it, so that its parent sees how it ended.
void EndIfInterrupted();
