// editor_read_level_actors through the server on the sample level grown to 10,000 placed actors of
// a Blueprint with five static mesh components (a root and four children). The tool filters on the
// cheap enumeration entries and reads full snapshots only for the actors it returns, so its cost
// at the default limit is one walk of the level plus 100 readbacks; the goal is under 100 ms of
// game-thread time. The other cases show the walk alone (a filter nothing matches), the repro-only
// walk, and what a tenfold limit costs.
#include "Server/ZorvekMCPBridgeServer.h"
#include "SimulatedEditorPort.h"

#include <benchmark/benchmark.h>

namespace
{
	const TCHAR* const WorldBenchmarkBlueprint = TEXT("/Game/Bench/BP_Crate.BP_Crate");
	constexpr int32 WorldBenchmarkActorCount = 10000;

	struct FWorldBenchmarkLevel
	{
		TSharedPtr<FSimulatedEditorPort> Port;
		TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server;
		FString Error;
	};

	bool CallWorldBenchmarkTool(FWorldBenchmarkLevel& Level, const TCHAR* Tool, const TSharedPtr<FJsonObject>& Arguments)
	{
		const TSharedPtr<FJsonObject> Result = Level.Server->ExecuteTool(Tool, Arguments);
		if (!Result.IsValid() || Result->GetBoolField(TEXT("isError")))
		{
			Level.Error = FString::Printf(TEXT("%s failed"), Tool);
			return false;
		}
		return true;
	}

	FWorldBenchmarkLevel MakeWorldBenchmarkLevel()
	{
		FWorldBenchmarkLevel Level;
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		if (!Editor->LoadProjectFile(GetSimulatedSampleProjectFile(), Level.Error))
		{
			return Level;
		}
		Level.Port = MakeShared<FSimulatedEditorPort>(Editor);
		Level.Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		Level.Server->SetEditorPort(Level.Port);

		TSharedPtr<FJsonObject> Create = MakeShared<FJsonObject>();
		Create->SetStringField(TEXT("PackagePath"), TEXT("/Game/Bench"));
		Create->SetStringField(TEXT("AssetName"), TEXT("BP_Crate"));
		if (!CallWorldBenchmarkTool(Level, TEXT("blueprint_create"), Create))
		{
			return Level;
		}
		const TCHAR* const Names[] = {TEXT("Body"), TEXT("Lid"), TEXT("Handle"), TEXT("Label"), TEXT("Strap")};
		for (int32 Index = 0; Index < 5; ++Index)
		{
			TSharedPtr<FJsonObject> Add = MakeShared<FJsonObject>();
			Add->SetStringField(TEXT("BlueprintNameOrPath"), WorldBenchmarkBlueprint);
			Add->SetStringField(TEXT("ComponentName"), Names[Index]);
			Add->SetStringField(TEXT("ComponentClassPath"), TEXT("/Script/Engine.StaticMeshComponent"));
			Add->SetStringField(TEXT("StaticMeshPath"), TEXT("/Engine/BasicShapes/Cube.Cube"));
			if (Index > 0)
			{
				Add->SetStringField(TEXT("ParentComponentName"), TEXT("Body"));
			}
			if (!CallWorldBenchmarkTool(Level, TEXT("blueprint_add_component"), Add))
			{
				return Level;
			}
		}
		TSharedPtr<FJsonObject> Place = MakeShared<FJsonObject>();
		Place->SetStringField(TEXT("BlueprintNameOrPath"), WorldBenchmarkBlueprint);
		Place->SetBoolField(TEXT("AllowCurrentLevel"), true);
		if (!CallWorldBenchmarkTool(Level, TEXT("editor_place_actor"), Place))
		{
			return Level;
		}
		// The rest through the port, as a level loaded from disk would hold them: untagged.
		IZorvekMCPBridgeWorld& World = Level.Port->GetWorld();
		for (int32 Index = 1; Index < WorldBenchmarkActorCount; ++Index)
		{
			const FZorvekMCPBridgeVector Location = {static_cast<double>(Index % 100) * 300.0, static_cast<double>(Index / 100) * 300.0, 0.0};
			if (!World.SpawnActorFromClass(TEXT("/Game/Bench/BP_Crate.BP_Crate_C"), Location, FZorvekMCPBridgeRotator()).IsValid())
			{
				Level.Error = TEXT("spawning failed");
				return Level;
			}
		}
		return Level;
	}

	FWorldBenchmarkLevel& GetWorldBenchmarkLevel()
	{
		static FWorldBenchmarkLevel Level = MakeWorldBenchmarkLevel();
		return Level;
	}

	void RunReadLevelActors(benchmark::State& State, const TSharedPtr<FJsonObject>& Arguments, int32 ExpectedResults)
	{
		FWorldBenchmarkLevel& Level = GetWorldBenchmarkLevel();
		if (!Level.Error.IsEmpty() || !Level.Server.IsValid())
		{
			State.SkipWithError(Level.Error.IsEmpty() ? "the benchmark level could not be built" : UECompatToUtf8(Level.Error).c_str());
			return;
		}
		for (auto _ : State)
		{
			const TSharedPtr<FJsonObject> Result = Level.Server->ExecuteTool(TEXT("editor_read_level_actors"), Arguments);
			State.PauseTiming();
			const TSharedPtr<FJsonObject> Payload = Result->GetObjectField(TEXT("structuredContent"));
			const TArray<TSharedPtr<FJsonValue>>& Actors = Payload->GetArrayField(TEXT("actors"));
			// The crates come after the sample level's own actors; the last one returned is a crate.
			const bool bRightAnswer = !Result->GetBoolField(TEXT("isError")) && Payload->GetIntegerField(TEXT("result_count")) == ExpectedResults
				&& Actors.Num() == ExpectedResults && (ExpectedResults == 0 || Actors.Last()->AsObject()->GetArrayField(TEXT("components")).Num() >= 5);
			State.ResumeTiming();
			if (!bRightAnswer)
			{
				State.SkipWithError("editor_read_level_actors gave an unexpected answer");
				return;
			}
		}
		State.counters["level_actors"] = static_cast<double>(Level.Port->GetWorld().GetAllLevelActors().Num());
	}

	void BM_ReadLevelActorsDefaultLimit(benchmark::State& State)
	{
		RunReadLevelActors(State, MakeShared<FJsonObject>(), 100);
	}

	void BM_ReadLevelActorsFilterMatchingNothing(benchmark::State& State)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("Filter"), TEXT("NoActorIsCalledThis"));
		RunReadLevelActors(State, Arguments, 0);
	}

	void BM_ReadLevelActorsReproOnly(benchmark::State& State)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetBoolField(TEXT("ReproOnly"), true);
		// The sample level's repro cylinder and the one placed crate.
		RunReadLevelActors(State, Arguments, 2);
	}

	void BM_ReadLevelActorsThousandCrates(benchmark::State& State)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("Filter"), TEXT("BP_Crate"));
		Arguments->SetNumberField(TEXT("Limit"), 1000);
		RunReadLevelActors(State, Arguments, 1000);
	}
}

BENCHMARK(BM_ReadLevelActorsDefaultLimit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadLevelActorsFilterMatchingNothing)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadLevelActorsReproOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadLevelActorsThousandCrates)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
