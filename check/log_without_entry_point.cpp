// A library with the logging library's name but without its entry point.
extern "C" int logWithoutEntryPoint()
{
    return 0;
}
