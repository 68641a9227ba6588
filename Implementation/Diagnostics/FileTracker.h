// The tracker of open files, as leak checking uses it. It is off at first.
#pragma once

// Starts tracking with no file known, and stops it with all forgotten; each says so with a message. Streams stay open.
void StartFileTracker();
void StopFileTracker();

// Posts the files still open, then forgets them: closing one later is reported like the close of an unknown stream. The
// number of files opened so far counts all that were opened while the tracker was on, since the process began.
void PostOpenFileStatistics();
