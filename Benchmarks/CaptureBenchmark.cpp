// editor_capture_viewport on the headless host's sample level at 640x360 and 1280x720: the whole
// tool call (focus, render, pixel read, PNG, file), and its two costly parts alone, the software
// render with its pixel read and the PNG compression. In the editor the render is the engine's and
// the pixel read flushes the GPU, so only the tool's own share (bounds, readback, file) carries over.
#include "Misc/Paths.h"
#include "Server/ZorvekMCPBridgeServer.h"
#include "SimulatedEditorPort.h"
#include "SimulatedViewport.h"
#include "SimulatedWorld.h"

#include <benchmark/benchmark.h>

#include <filesystem>

namespace
{
	struct FCaptureLevel
	{
		TSharedPtr<FSimulatedEditorPort> Port;
		TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server;
	};

	// The sample level, its screenshots written under a scratch project folder.
	FCaptureLevel MakeCaptureLevel(int32 Width, int32 Height)
	{
		static const std::filesystem::path ProjectFolder = []()
		{
			const std::filesystem::path Folder = std::filesystem::temp_directory_path() / "zorvek-capture-benchmark";
			std::filesystem::remove_all(Folder);
			std::filesystem::create_directories(Folder);
			return Folder;
		}();
		FPaths::SetProjectDirForHost(UECompatFromUtf8(ProjectFolder.string()) + TEXT("/"));
		FCaptureLevel Level;
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		FString Error;
		if (!Editor->LoadProjectFile(GetSimulatedSampleProjectFile(), Error))
		{
			return Level;
		}
		Level.Port = MakeShared<FSimulatedEditorPort>(Editor);
		Editor->GetWorld().GetViewport().SetSize(Width, Height);
		Level.Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		Level.Server->SetEditorPort(Level.Port);
		return Level;
	}

	void BM_CaptureViewportTool(benchmark::State& State)
	{
		const FCaptureLevel Level = MakeCaptureLevel((int32)State.range(0), (int32)State.range(1));
		if (!Level.Port.IsValid())
		{
			State.SkipWithError("the sample project did not load");
			return;
		}
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("ActorNameOrLabel"), TEXT("ReproCylinder"));
		for (auto _ : State)
		{
			const TSharedPtr<FJsonObject> Result = Level.Server->ExecuteTool(TEXT("editor_capture_viewport"), Arguments);
			if (!Result.IsValid() || Result->GetBoolField(TEXT("isError")))
			{
				State.SkipWithError("the capture failed");
				break;
			}
			// Each capture writes its own file unless two land in one millisecond; keep the folder small.
			State.PauseTiming();
			std::filesystem::remove(UECompatToUtf8(Result->GetObjectField(TEXT("structuredContent"))->GetStringField(TEXT("screenshot_path"))));
			State.ResumeTiming();
		}
	}

	void BM_RenderAndReadPixels(benchmark::State& State)
	{
		const FCaptureLevel Level = MakeCaptureLevel((int32)State.range(0), (int32)State.range(1));
		if (!Level.Port.IsValid())
		{
			State.SkipWithError("the sample project did not load");
			return;
		}
		FSimulatedViewport& Viewport = Level.Port->GetEditor().GetWorld().GetViewport();
		TArray<uint8> Pixels;
		for (auto _ : State)
		{
			Viewport.Draw();
			Viewport.ReadPixels(Pixels);
			benchmark::DoNotOptimize(Pixels.GetData());
		}
	}

	void BM_CompressPng(benchmark::State& State)
	{
		const FCaptureLevel Level = MakeCaptureLevel((int32)State.range(0), (int32)State.range(1));
		if (!Level.Port.IsValid())
		{
			State.SkipWithError("the sample project did not load");
			return;
		}
		IZorvekMCPBridgeWorld& World = Level.Port->GetWorld();
		TArray<uint8> Pixels;
		int32 Width = 0;
		int32 Height = 0;
		World.ReadActiveViewportPixels(Pixels, Width, Height);
		int64 Bytes = 0;
		for (auto _ : State)
		{
			const TArray<uint8> Png = World.CompressBgraToPng(Width, Height, Pixels);
			Bytes = Png.Num();
			benchmark::DoNotOptimize(Png.GetData());
		}
		State.counters["png_bytes"] = (double)Bytes;
	}
}

BENCHMARK(BM_CaptureViewportTool)->Args({640, 360})->Args({1280, 720})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RenderAndReadPixels)->Args({640, 360})->Args({1280, 720})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CompressPng)->Args({640, 360})->Args({1280, 720})->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
