// interrupt.h - signals that end the program, SIGINT, SIGTERM and SIGHUP: the first one lets it end behind a whole
// record, or after two seconds. Any thread may ask and wait, several at the same time.
#pragma once

// Catches the signals from here on; one that is ignored already, as nohup does with SIGHUP, stays ignored. A second
// signal, a tenth of a second or more behind it, ends the program at once, and two seconds behind the first one SIGALRM ends it by that: inside a long
// identification, or when nobody reads what it writes. Records that were gathered and not handed over by then are lost.
// Called once, before threads are started and behind FillStandardDescriptors: it opens descriptors.
void CatchInterrupts();

// Whether a signal has come: what is under way is then to be ended.
bool Interrupted();

// A descriptor that can be read from the first signal on, and stays so; to be polled together with others, and never read
// or closed. -1 before CatchInterrupts, which poll passes over.
int InterruptDescriptor();

// Waits until a descriptor has something to read or has reached its end. Returns false at once when a signal has come
// or comes.
bool WaitForInput(int descriptor);

// When a signal has come, ends the program by it, so that its parent sees how it ended.
void EndIfInterrupted();
