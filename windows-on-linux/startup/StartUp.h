// What programs and DLLs do first and last.
#pragma once

// How a program asks the C library for its arguments: wildcards stay as they are.
constexpr int UnexpandedArguments = 1;

// Sets the value with which the module guards its stack frames. Nothing guarded may be running yet.
void ChooseSecurityCookie();
// Runs the initialisers of the module's static objects.
void StartModule();
// Runs what the module has registered with atexit, last one first: the destructors of its static objects.
void EndModule();
// Runs a program's initialisers, and sees to it that its static objects are destroyed wherever exit is called.
void StartProgram();
