// A logging library without a log object.
extern "C" void LogTrace_GetGlobalObject(int, void **)
{
}
