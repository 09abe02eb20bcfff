// The simulated PCG plug-in: its plug-in and module state as the probe reads it, and component
// generation that is requested through reflection, runs on the next editor tick and leaves its
// results where 5.7 keeps them.
#include "AssetTestSupport.h"
#include "Dom/JsonValue.h"
#include "SimulatedPcg.h"
#include "SimulatedWorld.h"
#include "SimulatedWorldPort.h"

using namespace ZorvekAssetTests;

namespace
{
	const TCHAR* const PcgComponentClass = TEXT("/Script/PCG.PCGComponent");

	FZorvekMCPBridgeObjectHandle ForestComponent(FSimulatedEditorPort& Port)
	{
		for (FSimulatedActor* Actor : Port.GetEditor().GetWorld().GetAllLevelActors())
		{
			if (Actor->Label == TEXT("PCG_Forest"))
			{
				for (const std::unique_ptr<FSimulatedComponent>& Component : Actor->Components)
				{
					if (Component->Object->Class->GetPathName() == PcgComponentClass)
					{
						return FSimulatedEditorPort::ToHandle(Component->Object);
					}
				}
			}
		}
		return FZorvekMCPBridgeObjectHandle();
	}

	// FindFunction + ProcessEvent with the first parameter set to the flag, as the PCG tools call.
	void CallWithFlag(FSimulatedEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const TCHAR* FunctionName, bool bFlag)
	{
		TUniquePtr<IZorvekMCPBridgeParameterBlock> Block = Port.GetFunctions().CreateParameterBlock(PcgComponentClass, FunctionName);
		ASSERT_TRUE(Block.IsValid()) << S(FunctionName);
		ASSERT_TRUE(Block->ImportJsonValue(0, MakeShared<FJsonValueBoolean>(bFlag)));
		Port.GetFunctions().CallFunction(Object, *Block);
	}

	FString Export(FSimulatedEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const TCHAR* Property)
	{
		FString Text;
		Port.GetReflection().FindProperty(Object, Property).ExportText(Text);
		return Text;
	}

	int32 LevelActorsTagged(FSimulatedEditorPort& Port, const TCHAR* Tag)
	{
		int32 Count = 0;
		for (const FZorvekMCPBridgeActorEntry& Entry : Port.GetWorld().GetAllLevelActors())
		{
			Count += Entry.Tags.Contains(FName(Tag)) ? 1 : 0;
		}
		return Count;
	}
}

TEST(SimulatedWorldPcg, GenerationRequestedByReflectionCompletesOnTheNextTick)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = Port->GetEditor().GetWorld();
	const FZorvekMCPBridgeObjectHandle Component = ForestComponent(*Port);
	ASSERT_TRUE(Component.IsValid());
	EXPECT_EQ(S(Export(*Port, Component, TEXT("bGenerated"))), "False");
	// Before the first generation the bounds are the zero ForceInit box (§4.1).
	EXPECT_EQ(S(Export(*Port, Component, TEXT("LastGeneratedBounds"))), "(Min=(X=0.000000,Y=0.000000,Z=0.000000),Max=(X=0.000000,Y=0.000000,Z=0.000000),IsValid=0)");
	// bWasGeneratedThisSession is no reflected property (§4.1).
	EXPECT_FALSE(Port->GetReflection().FindProperty(Component, TEXT("bWasGeneratedThisSession")).IsValid());

	CallWithFlag(*Port, Component, TEXT("GenerateLocal"), true);
	// Asynchronous (§4.3): nothing has changed when the call returns.
	EXPECT_EQ(S(Export(*Port, Component, TEXT("bGenerated"))), "False");
	EXPECT_EQ(LevelActorsTagged(*Port, TEXT("PCG_ForestTree")), 0);
	EXPECT_EQ(World.GetPcg().GetPendingGenerationCount(), 1);

	World.Tick();
	EXPECT_EQ(S(Export(*Port, Component, TEXT("bGenerated"))), "True");
	EXPECT_EQ(S(Export(*Port, Component, TEXT("bDirtyGenerated"))), "False");
	// The volume is 1200 x 1200: a 3 x 3 grid at 0.1 points per square metre, a tree at each.
	EXPECT_EQ(LevelActorsTagged(*Port, TEXT("PCG_ForestTree")), 9);
	EXPECT_EQ(S(Export(*Port, Component, TEXT("LastGeneratedBounds"))), "(Min=(X=-600.000000,Y=700.000000,Z=0.000000),Max=(X=600.000000,Y=1900.000000,Z=200.000000),IsValid=1)");

	// The output: TaggedData[0].Data.Data is point data whose GetNumPoints answers 9.
	const FZorvekMCPBridgePropertyCursor TaggedData = Port->GetReflection().FindProperty(Component, TEXT("GeneratedGraphOutput")).FindStructField(TEXT("TaggedData"));
	ASSERT_EQ(TaggedData.GetArrayNum(), 1);
	const FZorvekMCPBridgePropertyCursor Data = TaggedData.GetArrayElement(0).FindStructField(TEXT("Data")).FindStructField(TEXT("Data"));
	const FZorvekMCPBridgeObjectHandle PointData = Data.GetReferencedObject();
	ASSERT_TRUE(PointData.IsValid());
	EXPECT_EQ(S(FSimulatedEditorPort::ToObject(PointData)->Class->GetPathName()), "/Script/PCG.PCGPointArrayData");
	TUniquePtr<IZorvekMCPBridgeParameterBlock> Count = Port->GetFunctions().CreateParameterBlock(TEXT("/Script/PCG.PCGPointArrayData"), TEXT("GetNumPoints"));
	ASSERT_TRUE(Count.IsValid());
	Port->GetFunctions().CallFunction(PointData, *Count);
	EXPECT_EQ(Count->ExportJsonValue(0)->AsNumber(), 9.0);

	// The spawned actors are listed by the managed actors resource's GeneratedActorsArray; the
	// old GeneratedActors stays empty (§4.1).
	const FZorvekMCPBridgePropertyCursor Resources = Port->GetReflection().FindProperty(Component, TEXT("GeneratedResources"));
	ASSERT_EQ(Resources.GetArrayNum(), 1);
	const FZorvekMCPBridgeObjectHandle Managed = Resources.GetArrayElement(0).GetReferencedObject();
	EXPECT_EQ(Port->GetReflection().FindProperty(Managed, TEXT("GeneratedActorsArray")).GetArrayNum(), 9);
	EXPECT_EQ(Port->GetReflection().FindProperty(Managed, TEXT("GeneratedActors")).GetArrayNum(), 0);

	// Without force an up-to-date component ignores the request; with force it regenerates and
	// replaces its actors rather than adding to them.
	CallWithFlag(*Port, Component, TEXT("GenerateLocal"), false);
	EXPECT_EQ(World.GetPcg().GetPendingGenerationCount(), 0);
	CallWithFlag(*Port, Component, TEXT("GenerateLocal"), true);
	World.Tick();
	EXPECT_EQ(LevelActorsTagged(*Port, TEXT("PCG_ForestTree")), 9);

	// CleanupLocal removes what it made.
	CallWithFlag(*Port, Component, TEXT("CleanupLocal"), true);
	EXPECT_EQ(LevelActorsTagged(*Port, TEXT("PCG_ForestTree")), 0);
	EXPECT_EQ(S(Export(*Port, Component, TEXT("bGenerated"))), "False");
}

TEST(SimulatedWorldPcg, ThePluginStateIsWhatTheProbeReadsAndAnUnloadedModuleHasNoClasses)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	IZorvekMCPBridgeWorld& WorldPort = Port->GetWorld();
	FSimulatedPcg& Pcg = Port->GetEditor().GetWorld().GetPcg();
	EXPECT_TRUE(WorldPort.GetPluginState(TEXT("PCG")).bInstalled);
	EXPECT_TRUE(WorldPort.GetPluginState(TEXT("PCG")).bEnabled);
	EXPECT_TRUE(WorldPort.ModuleExists(TEXT("PCG")));
	EXPECT_TRUE(WorldPort.IsModuleLoaded(TEXT("PCG")));
	EXPECT_FALSE(WorldPort.GetPluginState(TEXT("NoSuchPlugin")).bInstalled);
	EXPECT_TRUE(Port->GetObjects().LoadObject(PcgComponentClass).IsValid());

	// Enabled but not loaded: the classes are not there to load.
	FSimulatedPcgPluginState State;
	State.bModuleLoaded = false;
	Pcg.SetPluginState(State);
	EXPECT_TRUE(WorldPort.GetPluginState(TEXT("PCG")).bEnabled);
	EXPECT_TRUE(WorldPort.ModuleExists(TEXT("PCG")));
	EXPECT_FALSE(WorldPort.IsModuleLoaded(TEXT("PCG")));
	EXPECT_FALSE(Port->GetObjects().LoadObject(PcgComponentClass).IsValid());

	// Installed but disabled.
	State = FSimulatedPcgPluginState();
	State.bEnabled = false;
	State.bModuleLoaded = false;
	Pcg.SetPluginState(State);
	EXPECT_TRUE(WorldPort.GetPluginState(TEXT("PCG")).bInstalled);
	EXPECT_FALSE(WorldPort.GetPluginState(TEXT("PCG")).bEnabled);

	// Absent: nothing of it is known.
	State.bInstalled = false;
	State.bEnabled = true;
	Pcg.SetPluginState(State);
	EXPECT_FALSE(WorldPort.GetPluginState(TEXT("PCG")).bInstalled);
	EXPECT_FALSE(WorldPort.GetPluginState(TEXT("PCG")).bEnabled);
	EXPECT_FALSE(WorldPort.ModuleExists(TEXT("PCG")));
}

TEST(SimulatedWorldPcg, ADestroyedOwnerTakesItsScheduledGenerationWithIt)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = Port->GetEditor().GetWorld();
	const FZorvekMCPBridgeObjectHandle Component = ForestComponent(*Port);
	CallWithFlag(*Port, Component, TEXT("GenerateLocal"), true);
	ASSERT_EQ(World.GetPcg().GetPendingGenerationCount(), 1);
	ASSERT_TRUE(Port->GetWorld().DestroyActors({FSimulatedEditorPort::ToHandle(FSimulatedEditorPort::ToObject(Component)->Outer)}));
	EXPECT_EQ(World.GetPcg().GetPendingGenerationCount(), 0);
	World.Tick();
	EXPECT_EQ(LevelActorsTagged(*Port, TEXT("PCG_ForestTree")), 0);
}
