// A library under the Oculus runtime's name that starts and can do nothing else.

struct ovrInitParams;

extern "C" int ovr_Initialize(const ovrInitParams *)
{
    return 0;
}
