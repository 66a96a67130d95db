// A library under the Oculus runtime's name that starts and can do nothing else.

extern "C" int ovr_Initialize(const void *)
{
    return 0;
}
