// blueprint_compile through the server on a simulated Blueprint whose event graph holds N nodes
// that all survive pruning: BeginPlay, then a chain of N/2 branches (each then into the next),
// each branch's Condition fed by its own Get of a bool variable. N = 500 and 2,000. The compile
// visits every node and link, so it is meant to grow linearly with the graph.
#include "Server/ZorvekMCPBridgeServer.h"
#include "SimulatedBlueprint.h"
#include "SimulatedEditorPort.h"

#include <benchmark/benchmark.h>

namespace
{
	const TCHAR* const CompileBenchmarkBlueprintPath = TEXT("/Game/Bench/BP_Compiled.BP_Compiled");

	struct FCompileBenchmarkGraph
	{
		TSharedPtr<FSimulatedEditorPort> Port;
		TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server;
	};

	FCompileBenchmarkGraph MakeCompileBenchmarkGraph(int32 NodeCount)
	{
		FString Directory = GetSimulatedSampleProjectFile();
		int32 SlashIndex = INDEX_NONE;
		Directory.FindLastChar(TEXT('/'), SlashIndex);
		Directory.LeftInline(SlashIndex);
		const FString Json = TEXT(R"json({"include": ["BlueprintEngineTypes.json"],
			"assets": [{"package": "/Game/Bench/BP_Compiled", "blueprint": {"parent": "/Script/Engine.Actor",
				"variables": [{"name": "bGo", "type": "bool", "default": "true"}],
				"graphs": [{"name": "EventGraph", "nodes": [{"id": "begin", "kind": "event", "function": "ReceiveBeginPlay", "x": 0, "y": 0}]}]}}]})json");
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		FString Error;
		if (!Editor->LoadProjectJson(Json, Directory, Error))
		{
			return FCompileBenchmarkGraph();
		}
		FCompileBenchmarkGraph Bench;
		Bench.Port = MakeShared<FSimulatedEditorPort>(Editor);
		FSimulatedBlueprints& Blueprints = Editor->GetBlueprints();
		FSimulatedBlueprint* Blueprint = Blueprints.FindBlueprint(FSimulatedEditorPort::ToObject(Bench.Port->GetObjects().FindObject(CompileBenchmarkBlueprintPath)));
		FSimulatedGraph* Graph = Blueprint ? Blueprint->FindGraph(TEXT("EventGraph")) : nullptr;
		FSimulatedNode* BeginPlay = Graph && !Graph->Nodes.empty() ? Graph->Nodes.front().get() : nullptr;
		FSimulatedPin* Previous = BeginPlay ? BeginPlay->FindPin(TEXT("then")) : nullptr;
		if (!Previous)
		{
			return FCompileBenchmarkGraph();
		}
		for (int32 Index = 0; Index < NodeCount / 2; ++Index)
		{
			FSimulatedNode* Branch = Blueprints.AddBranchNode(*Graph, 300 * (Index + 1), 0);
			FSimulatedNode* Get = Blueprints.AddVariableGetNode(*Graph, TEXT("bGo"), 300 * (Index + 1) - 150, 150);
			FSimulatedBlueprints::MakeLink(*Previous, *Branch->FindPin(TEXT("execute")));
			FSimulatedBlueprints::MakeLink(*Get->FindPin(TEXT("bGo")), *Branch->FindPin(TEXT("Condition")));
			Previous = Branch->FindPin(TEXT("then"));
		}
		Bench.Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		Bench.Server->SetEditorPort(Bench.Port);
		return Bench;
	}

	void BM_CompileBlueprint(benchmark::State& State)
	{
		const int32 NodeCount = static_cast<int32>(State.range(0));
		const FCompileBenchmarkGraph Bench = MakeCompileBenchmarkGraph(NodeCount);
		if (!Bench.Server.IsValid())
		{
			State.SkipWithError("the benchmark Blueprint could not be built");
			return;
		}
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("BlueprintNameOrPath"), CompileBenchmarkBlueprintPath);
		for (auto _ : State)
		{
			const TSharedPtr<FJsonObject> Result = Bench.Server->ExecuteTool(TEXT("blueprint_compile"), Arguments);
			State.PauseTiming();
			const TSharedPtr<FJsonObject> Payload = Result->GetObjectField(TEXT("structuredContent"));
			if (Result->GetBoolField(TEXT("isError")) || Payload->GetStringField(TEXT("status")) != TEXT("up_to_date"))
			{
				State.SkipWithError("the compile did not come out up to date");
				return;
			}
			State.ResumeTiming();
		}
		State.counters["nodes"] = NodeCount + 1;
	}
}

BENCHMARK(BM_CompileBlueprint)->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
