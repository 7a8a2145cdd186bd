// A program without tests: the headers that all test programs share are compiled with it.
