// A forest of 10,000 points on the sample level: 100 m x 100 m at one tree per square metre. Three
// cases, each the game-thread time of what it names: the whole pcg_run_forest_recipe call (graph by
// reflection, volume, generation request), the generation itself in the simulated editor (the next
// editor tick: sampling, density filter, weighted mesh choice, output data), and a
// pcg_update_forest_recipe that changes the density and regenerates in place. A fourth case places
// the capped 1,000 stand-in trees with pcg_create_visual_repro_output.
#include "Server/ZorvekMCPBridgeServer.h"
#include "SimulatedEditorPort.h"
#include "SimulatedPcg.h"
#include "SimulatedWorld.h"

#include <benchmark/benchmark.h>

namespace
{
	struct FPcgForestBenchmarkLevel
	{
		TSharedPtr<FSimulatedEditorPort> Port;
		TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server;
	};

	FPcgForestBenchmarkLevel MakePcgForestBenchmarkLevel(benchmark::State& State)
	{
		FPcgForestBenchmarkLevel Level;
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		FString Error;
		if (!Editor->LoadProjectFile(GetSimulatedSampleProjectFile(), Error))
		{
			State.SkipWithError("the sample project did not load");
			return Level;
		}
		Level.Port = MakeShared<FSimulatedEditorPort>(Editor);
		Level.Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		Level.Server->SetEditorPort(Level.Port);
		return Level;
	}

	bool CallPcgForestBenchmarkTool(benchmark::State& State, FPcgForestBenchmarkLevel& Level, const TCHAR* Tool, const TSharedPtr<FJsonObject>& Arguments)
	{
		const TSharedPtr<FJsonObject> Result = Level.Server->ExecuteTool(Tool, Arguments);
		if (!Result.IsValid() || Result->GetBoolField(TEXT("isError")))
		{
			State.SkipWithError("a forest tool failed");
			return false;
		}
		return true;
	}

	TSharedPtr<FJsonObject> MakePcgForestRecipeArguments(int32 Index)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetBoolField(TEXT("AllowCurrentLevel"), true);
		Arguments->SetStringField(TEXT("GraphPath"), FString::Printf(TEXT("/Game/Bench/PCG_Forest%d"), Index));
		Arguments->SetStringField(TEXT("ActorLabel"), FString::Printf(TEXT("BenchForest%d"), Index));
		Arguments->SetNumberField(TEXT("Density"), 1.0);
		Arguments->SetNumberField(TEXT("SizeX"), 10000.0);
		Arguments->SetNumberField(TEXT("SizeY"), 10000.0);
		return Arguments;
	}

	int32 CountPcgForestBenchmarkPoints(FPcgForestBenchmarkLevel& Level)
	{
		int32 Points = 0;
		for (FSimulatedActor* Actor : Level.Port->GetEditor().GetWorld().GetAllLevelActors())
		{
			for (const std::unique_ptr<FSimulatedComponent>& Component : Actor->Components)
			{
				if (const FSimulatedPcgRunSummary* Run = Level.Port->GetEditor().GetWorld().GetPcg().FindLastRun(*Component->Object))
				{
					Points += Actor->Label.StartsWith(TEXT("BenchForest")) ? Run->OutputPointCount : 0;
				}
			}
		}
		return Points;
	}
}

// The recipe call alone; each iteration builds a new graph and volume.
static void BM_PcgForestRecipeCall(benchmark::State& State)
{
	FPcgForestBenchmarkLevel Level = MakePcgForestBenchmarkLevel(State);
	int32 Index = 0;
	for (auto _ : State)
	{
		if (!Level.Port.IsValid() || !CallPcgForestBenchmarkTool(State, Level, TEXT("pcg_run_forest_recipe"), MakePcgForestRecipeArguments(Index++)))
		{
			return;
		}
	}
}
BENCHMARK(BM_PcgForestRecipeCall)->Unit(benchmark::kMillisecond);

// The tick that runs one 10,000-point generation.
static void BM_PcgForestGeneration10000(benchmark::State& State)
{
	FPcgForestBenchmarkLevel Level = MakePcgForestBenchmarkLevel(State);
	if (!Level.Port.IsValid() || !CallPcgForestBenchmarkTool(State, Level, TEXT("pcg_run_forest_recipe"), MakePcgForestRecipeArguments(0)))
	{
		return;
	}
	TSharedPtr<FJsonObject> Generate = MakeShared<FJsonObject>();
	Generate->SetStringField(TEXT("ForestActorNameOrLabel"), TEXT("BenchForest0"));
	for (auto _ : State)
	{
		State.PauseTiming();
		Level.Server->ExecuteTool(TEXT("pcg_generate"), Generate);
		State.ResumeTiming();
		Level.Port->GetEditor().GetWorld().Tick();
	}
	if (CountPcgForestBenchmarkPoints(Level) != 10000)
	{
		State.SkipWithError("the forest did not generate 10,000 points");
	}
	State.counters["points"] = CountPcgForestBenchmarkPoints(Level);
}
BENCHMARK(BM_PcgForestGeneration10000)->Unit(benchmark::kMillisecond);

// pcg_update_forest_recipe (density up and down in turn) followed by the regenerating tick.
static void BM_PcgForestUpdateAndRegenerate(benchmark::State& State)
{
	FPcgForestBenchmarkLevel Level = MakePcgForestBenchmarkLevel(State);
	if (!Level.Port.IsValid() || !CallPcgForestBenchmarkTool(State, Level, TEXT("pcg_run_forest_recipe"), MakePcgForestRecipeArguments(0)))
	{
		return;
	}
	Level.Port->GetEditor().GetWorld().Tick();
	bool bDenser = false;
	for (auto _ : State)
	{
		TSharedPtr<FJsonObject> Update = MakeShared<FJsonObject>();
		Update->SetBoolField(TEXT("AllowCurrentLevel"), true);
		Update->SetStringField(TEXT("ForestActorNameOrLabel"), TEXT("BenchForest0"));
		Update->SetNumberField(TEXT("Density"), bDenser ? 1.0 : 0.5);
		bDenser = !bDenser;
		if (!CallPcgForestBenchmarkTool(State, Level, TEXT("pcg_update_forest_recipe"), Update))
		{
			return;
		}
		Level.Port->GetEditor().GetWorld().Tick();
	}
}
BENCHMARK(BM_PcgForestUpdateAndRegenerate)->Unit(benchmark::kMillisecond);

// 1,000 stand-in trees (the cap) at the generated points, replacing the previous 1,000.
static void BM_PcgForestVisualOutput1000(benchmark::State& State)
{
	FPcgForestBenchmarkLevel Level = MakePcgForestBenchmarkLevel(State);
	if (!Level.Port.IsValid() || !CallPcgForestBenchmarkTool(State, Level, TEXT("pcg_run_forest_recipe"), MakePcgForestRecipeArguments(0)))
	{
		return;
	}
	Level.Port->GetEditor().GetWorld().Tick();
	TSharedPtr<FJsonObject> Visual = MakeShared<FJsonObject>();
	Visual->SetBoolField(TEXT("AllowCurrentLevel"), true);
	Visual->SetStringField(TEXT("ForestActorNameOrLabel"), TEXT("BenchForest0"));
	Visual->SetNumberField(TEXT("MaxActors"), 1000.0);
	for (auto _ : State)
	{
		if (!CallPcgForestBenchmarkTool(State, Level, TEXT("pcg_create_visual_repro_output"), Visual))
		{
			return;
		}
	}
}
BENCHMARK(BM_PcgForestVisualOutput1000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
