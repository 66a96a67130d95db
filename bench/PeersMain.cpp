// Main of the benchmarks that draw: an application with the peers that the view asks, and no
// window.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"

#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_UseDesktopOpenGL);
    Application application(QStringLiteral("bench"), argc, argv);
    application.setTextureProvider(std::make_unique<KTextureProvider>(&application, true, false));
    application.setGlobalObject(std::make_unique<KGlobalObject>(&application));
    application.setShaderBuilder(std::make_unique<KShaderCodeBuilder>(&application));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
