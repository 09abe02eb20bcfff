// blueprint_read_graph through the server on a simulated Blueprint whose event graph holds N
// branch nodes and 2N links (each node's then and else wired two nodes on, around the ring), for
// N = 500, 1,000 and 2,000. The reader is meant to grow linearly with the graph.
#include "Blueprint/ZorvekMCPBridgeBlueprintGraphReader.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Server/ZorvekMCPBridgeServer.h"
#include "SimulatedBlueprint.h"
#include "SimulatedEditorPort.h"

#include <benchmark/benchmark.h>

namespace
{
	const TCHAR* const BenchmarkBlueprintPath = TEXT("/Game/Bench/BP_Large.BP_Large");

	struct FLargeGraph
	{
		TSharedPtr<FSimulatedEditorPort> Port;
		TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server;
	};

	FLargeGraph MakeLargeGraph(int32 NodeCount)
	{
		FString Directory = GetSimulatedSampleProjectFile();
		int32 SlashIndex = INDEX_NONE;
		Directory.FindLastChar(TEXT('/'), SlashIndex);
		Directory.LeftInline(SlashIndex);
		const FString Json = TEXT(R"json({"include": ["BlueprintEngineTypes.json"],
			"assets": [{"package": "/Game/Bench/BP_Large", "blueprint": {"parent": "/Script/Engine.Actor"}}]})json");
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		FString Error;
		if (!Editor->LoadProjectJson(Json, Directory, Error))
		{
			return FLargeGraph();
		}
		FLargeGraph Large;
		Large.Port = MakeShared<FSimulatedEditorPort>(Editor);
		FSimulatedBlueprints& Blueprints = Editor->GetBlueprints();
		FSimulatedBlueprint* Blueprint = Blueprints.FindBlueprint(FSimulatedEditorPort::ToObject(Large.Port->GetObjects().FindObject(BenchmarkBlueprintPath)));
		FSimulatedGraph* Graph = Blueprint ? Blueprint->FindGraph(TEXT("EventGraph")) : nullptr;
		if (!Graph)
		{
			return FLargeGraph();
		}
		std::vector<FSimulatedNode*> Branches;
		for (int32 Index = 0; Index < NodeCount; ++Index)
		{
			Branches.push_back(Blueprints.AddBranchNode(*Graph, (Index % 40) * 300, (Index / 40) * 200));
		}
		for (int32 Index = 0; Index < NodeCount; ++Index)
		{
			FSimulatedBlueprints::MakeLink(*Branches[Index]->FindPin(TEXT("then")), *Branches[(Index + 1) % NodeCount]->FindPin(TEXT("execute")));
			FSimulatedBlueprints::MakeLink(*Branches[Index]->FindPin(TEXT("else")), *Branches[(Index + 2) % NodeCount]->FindPin(TEXT("execute")));
		}
		Large.Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		Large.Server->SetEditorPort(Large.Port);
		return Large;
	}

	void BM_ReadGraph(benchmark::State& State)
	{
		const int32 NodeCount = static_cast<int32>(State.range(0));
		const FLargeGraph Large = MakeLargeGraph(NodeCount);
		if (!Large.Server.IsValid())
		{
			State.SkipWithError("the benchmark Blueprint could not be built");
			return;
		}
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("BlueprintNameOrPath"), BenchmarkBlueprintPath);
		Arguments->SetStringField(TEXT("GraphName"), TEXT("EventGraph"));
		int64 AnswerLength = 0;
		for (auto _ : State)
		{
			const TSharedPtr<FJsonObject> Result = Large.Server->ExecuteTool(TEXT("blueprint_read_graph"), Arguments);
			// Checking the answer copies its 16 MB text: not part of the tool's cost.
			State.PauseTiming();
			const TSharedPtr<FJsonObject> Payload = Result->GetObjectField(TEXT("structuredContent"));
			// The three ghost events stay in the graph beside the branches.
			if (Result->GetBoolField(TEXT("isError")) || Payload->GetObjectField(TEXT("parsed_graph"))->GetIntegerField(TEXT("connection_count")) != 2 * NodeCount)
			{
				State.ResumeTiming();
				State.SkipWithError("unexpected answer");
				break;
			}
			AnswerLength = Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")).Len();
			State.ResumeTiming();
		}
		// The text item is the pretty-printed payload; the answer's structuredContent is the same object.
		State.counters["answer_bytes"] = static_cast<double>(AnswerLength);
		State.counters["bytes_per_node"] = static_cast<double>(AnswerLength) / NodeCount;
	}

	// The same read without the tool: loading the snapshot and running the reader, no JSON text.
	void BM_ReadGraphWithoutEnvelope(benchmark::State& State)
	{
		const int32 NodeCount = static_cast<int32>(State.range(0));
		const FLargeGraph Large = MakeLargeGraph(NodeCount);
		if (!Large.Server.IsValid())
		{
			State.SkipWithError("the benchmark Blueprint could not be built");
			return;
		}
		for (auto _ : State)
		{
			ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
			FString Error;
			ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(*Large.Port, BenchmarkBlueprintPath, Loaded, Error);
			const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Loaded.Snapshot, TEXT("EventGraph"));
			if (!Graph)
			{
				State.SkipWithError("no graph");
				break;
			}
			const ZorvekMCPBridgeBlueprintGraphReader::FGraphReading Reading = ZorvekMCPBridgeBlueprintGraphReader::ReadGraph(*Large.Port, Loaded.Snapshot, *Graph);
			benchmark::DoNotOptimize(Reading.ParsedGraph);
		}
	}
}

BENCHMARK(BM_ReadGraph)->Arg(500)->Arg(1000)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadGraphWithoutEnvelope)->Arg(500)->Arg(1000)->Arg(2000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
