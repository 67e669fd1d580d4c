// Not the logging library, but called so.
extern "C" int hollowLog()
{
    return 0;
}
