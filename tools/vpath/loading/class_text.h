// Whether a file declares a class, by its text.
#pragma once

// For vpSetIsClassFcn. The first line that begins with a letter decides, blanks before it left
// aside: the file declares a class when the first word of that line is "classdef". Lines that
// begin with any other character are taken for remarks, whatever their mark. What stands in a
// remark of several lines may therefore mislead. Reads no further than that word. A file that
// cannot be read declares none; that is said on standard error.
bool DeclaresClass(const char* fileName);

// How many files could not be read so far.
unsigned int UnreadClassFiles();
