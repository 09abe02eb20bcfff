// The sample project's Vessa extensions, written as the host's stand-ins for their Blueprint
// graphs and native code: Level Tools (a Blueprint class with an action that spawns a tagged actor
// into the sample level and a query that counts actors by class), a native extension whose
// functions take every parameter kind, a disabled one, one whose action reports an error, and an
// Editor Utility Blueprint extension the registry finds before anything has loaded it.
#include "Extensions/ZorvekMCPBridgeVessaTypes.h"
#include "SimulatedFunctions.h"

namespace
{
	using namespace SimulatedFunctionFlags;
	using namespace SimulatedParameterFlags;
	using SimulatedVessa::AddFunction;

	// Where the sample extensions place actors: the level the host has open.
	const TCHAR* const VessaSampleLevelPackage = TEXT("/Temp/Untitled_1");
	const TCHAR* const VessaSpawnTag = TEXT("ZorvekVessa");
	// Blueprint functions: outputs are OutParm without ReturnParm.
	const uint32 VessaBlueprintFunctionFlags = Public | BlueprintCallable | BlueprintEvent;

	FSimulatedType* VessaAddSampleClass(FSimulatedEditor& Editor, const TCHAR* Path, const TCHAR* Name, const TCHAR* Description, bool bEnabled = true)
	{
		FString Error;
		FSimulatedType* Class = Editor.AddClass(Path, SimulatedVessa::ExtensionBaseClassPath, 0, Error);
		check(Class);
		FSimulatedVessaClassDefault& Default = Editor.GetVessaState().ClassDefaults[Class];
		Default.Definition.ExtensionName = Name;
		Default.Definition.ExtensionDescription = Description;
		Default.bEnabled = bEnabled;
		return Class;
	}

	FString VessaFieldText(const FSimulatedEditor& Editor, const FSimulatedProperty& Property, const FSimulatedValue& Value)
	{
		FString Text;
		Editor.ExportValueText(Property, Value, false, Text);
		return Text;
	}

	void VessaAddLevelTools(FSimulatedEditor& Editor)
	{
		FSimulatedType* Class = VessaAddSampleClass(Editor, TEXT("/Game/Vessa/BP_LevelTools.BP_LevelTools_C"), TEXT("Level Tools"),
			TEXT("Spawn tagged marker actors into the open level and count the actors of a class."));
		FSimulatedEditor* EditorPtr = &Editor;
		AddFunction(Editor, Class, TEXT("SpawnTaggedActor"), VessaBlueprintFunctionFlags,
			{{TEXT("ActorName"), TEXT("FString"), 0}, {TEXT("Location"), TEXT("struct:/Script/CoreUObject.Vector"), 0}, {TEXT("ExtraTag"), TEXT("FName"), 0}},
			{{TEXT("Category"), TEXT("Vessa Actions")}, {TEXT("ToolTip"), TEXT("Spawn a marker actor tagged ZorvekVessa into the open level.")}},
			[EditorPtr](FSimulatedObject&, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
			{
				FSimulatedEditor& Ed = *EditorPtr;
				const FString Name = Values[0].Text.IsEmpty() ? FString(TEXT("VessaMarker")) : Values[0].Text;
				FSimulatedType* ActorClass = Ed.FindTypeByPath(TEXT("/Script/Engine.Actor"));
				FSimulatedObject* Level = Ed.FindOrCreatePackage(VessaSampleLevelPackage);
				FString Error;
				FSimulatedObject* Actor = ActorClass ? Ed.CreateObject(ActorClass, Level, Name, Error) : nullptr;
				if (!Actor)
				{
					ZorvekMCPBridgeVessaReports::ReportError(FString::Printf(TEXT("Could not spawn %s: %s"), *Name, *Error));
					return;
				}
				const int32 TagsIndex = ActorClass->FindPropertyIndex(TEXT("Tags"));
				FSimulatedValue Tag;
				Tag.Text = VessaSpawnTag;
				Actor->Values[TagsIndex].Items.push_back(Tag);
				if (!Values[2].Text.IsEmpty())
				{
					Actor->Values[TagsIndex].Items.push_back(Values[2]);
				}
				Ed.RecordTransactionalChange();
				const FSimulatedValue& Location = Values[1];
				ZorvekMCPBridgeVessaReports::ReportResults(FString::Printf(TEXT("Spawned %s at (%g, %g, %g)."), *Actor->GetPathName(),
					Location.Items[0].Real, Location.Items[1].Real, Location.Items[2].Real));
			});
		AddFunction(Editor, Class, TEXT("CountActorsByClass"), VessaBlueprintFunctionFlags | HasOutParms,
			{{TEXT("ClassName"), TEXT("FString"), 0}, {TEXT("Count"), TEXT("int32"), OutParm}, {TEXT("ActorNames"), TEXT("array:FString"), OutParm}},
			{{TEXT("Category"), TEXT("Vessa Queries")}, {TEXT("ToolTip"), TEXT("Count the actors of the open level whose class name contains ClassName.")}},
			[EditorPtr](FSimulatedObject&, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
			{
				const FSimulatedType* ActorClass = EditorPtr->FindTypeByPath(TEXT("/Script/Engine.Actor"));
				const FSimulatedObject* Level = EditorPtr->FindObject(VessaSampleLevelPackage);
				Values[1].Integer = 0;
				Values[2].Items.clear();
				EditorPtr->ForEachObject([&](FSimulatedObject* Object)
				{
					if (Level && Object->Outer == Level && Object->Class && Object->Class->IsChildOf(ActorClass)
						&& Object->Class->Name.Contains(Values[0].Text, ESearchCase::IgnoreCase))
					{
						++Values[1].Integer;
						FSimulatedValue Name;
						Name.Text = Object->Name;
						Values[2].Items.push_back(Name);
					}
				});
			});
	}

	void VessaAddParameterShowcase(FSimulatedEditor& Editor)
	{
		FSimulatedType* Class = VessaAddSampleClass(Editor, TEXT("/Script/SampleGame.VessaParameterShowcase"), TEXT("Parameter Showcase"),
			TEXT("Takes every parameter kind Vessa describes and echoes what arrived."));
		FSimulatedEditor* EditorPtr = &Editor;
		// Inputs of both functions, in this order.
		const std::initializer_list<SimulatedVessa::FParameterSpec> Inputs = {
			{TEXT("Labels"), TEXT("array:FString"), 0},
			{TEXT("Drop"), TEXT("struct:/Script/SampleGame.LootDrop"), 0},
			{TEXT("BlendMode"), TEXT("enum:/Script/Engine.EBlendMode"), 0},
			{TEXT("Offset"), TEXT("struct:/Script/CoreUObject.Vector"), 0},
			{TEXT("Tint"), TEXT("struct:/Script/CoreUObject.LinearColor"), 0},
			{TEXT("Swatch"), TEXT("struct:/Script/CoreUObject.Color"), 0},
			{TEXT("Target"), TEXT("object:/Script/CoreUObject.Object"), 0},
			{TEXT("Seed"), TEXT("int64"), 0},
			{TEXT("RawByte"), TEXT("uint8"), 0},
			{TEXT("Scale"), TEXT("double"), 0},
			{TEXT("Caption"), TEXT("FText"), 0},
			{TEXT("Note"), TEXT("FString"), OutParm | ReferenceParm | ConstParm},
		};
		AddFunction(Editor, Class, TEXT("ApplyEverything"), Public | Native | BlueprintCallable, Inputs,
			{{TEXT("VessaAction"), TEXT("")}, {TEXT("Category"), TEXT("Showcase")}, {TEXT("ToolTip"), TEXT("Report the values every parameter received.")}},
			[EditorPtr](FSimulatedObject&, const FSimulatedFunction& Function, std::vector<FSimulatedValue>& Values)
			{
				FString Summary;
				for (size_t Index = 0; Index < Values.size(); ++Index)
				{
					Summary += FString::Printf(TEXT("%s%s=%s"), Summary.IsEmpty() ? TEXT("") : TEXT("; "), *Function.Parameters[Index]->Name,
						*VessaFieldText(*EditorPtr, *Function.Parameters[Index], Values[Index]));
				}
				ZorvekMCPBridgeVessaReports::ReportResults(Summary);
			});
		AddFunction(Editor, Class, TEXT("EchoDrop"), Public | Native | BlueprintCallable | HasOutParms,
			{{TEXT("Drop"), TEXT("struct:/Script/SampleGame.LootDrop"), 0}, {TEXT("Labels"), TEXT("array:FString"), 0}, {TEXT("BlendMode"), TEXT("enum:/Script/Engine.EBlendMode"), 0},
				{TEXT("Tint"), TEXT("struct:/Script/CoreUObject.LinearColor"), 0}, {TEXT("Caption"), TEXT("FText"), 0},
				{TEXT("EchoedDrop"), TEXT("struct:/Script/SampleGame.LootDrop"), OutParm}, {TEXT("LabelCount"), TEXT("int32"), OutParm},
				{TEXT("EchoedBlendMode"), TEXT("enum:/Script/Engine.EBlendMode"), OutParm}, {TEXT("EchoedTint"), TEXT("struct:/Script/CoreUObject.LinearColor"), OutParm},
				{TEXT("EchoedCaption"), TEXT("FText"), OutParm}, {TEXT("ReturnValue"), TEXT("bool"), OutParm | ReturnParm}},
			{{TEXT("ZorvekVessaQuery"), TEXT("")}, {TEXT("ToolTip"), TEXT("Return the drop, blend mode, tint and caption it was given, and how many labels came.")}},
			[](FSimulatedObject&, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
			{
				Values[5] = Values[0];
				Values[6].Integer = (int64)Values[1].Items.size();
				Values[7] = Values[2];
				Values[8] = Values[3];
				Values[9] = Values[4];
				Values[10].Bool = true;
			});
	}

	void VessaAddSmallSamples(FSimulatedEditor& Editor)
	{
		FSimulatedType* Hidden = VessaAddSampleClass(Editor, TEXT("/Script/SampleGame.VessaHiddenTools"), TEXT("Hidden Tools"),
			TEXT("A disabled extension: absent from lists and searches, still callable by id."), false);
		AddFunction(Editor, Hidden, TEXT("Ping"), Public | Native | BlueprintCallable | HasOutParms, {{TEXT("Reply"), TEXT("FString"), OutParm}},
			{{TEXT("Category"), TEXT("ZorvikVessaQueries")}, {TEXT("ToolTip"), TEXT("Answer pong.")}},
			[](FSimulatedObject&, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values) { Values[0].Text = TEXT("pong"); });

		FSimulatedType* Failing = VessaAddSampleClass(Editor, TEXT("/Script/SampleGame.VessaFailingTools"), TEXT("Failing Tools"),
			TEXT("An action that reports results and then an error, as a Blueprint graph that hits a problem does."));
		AddFunction(Editor, Failing, TEXT("AlwaysFails"), Public | Native | BlueprintCallable, {},
			{{TEXT("ZorvikVessaAction"), TEXT("")}, {TEXT("ToolTip"), TEXT("Report partial results, then fail.")}},
			[](FSimulatedObject&, const FSimulatedFunction&, std::vector<FSimulatedValue>&)
			{
				ZorvekMCPBridgeVessaReports::ReportResults(TEXT("Half of the work was done."));
				ZorvekMCPBridgeVessaReports::ReportError(TEXT("The failing sample always fails."));
			});
	}

	// An Editor Utility Blueprint extension the registry lists but nothing has loaded.
	void VessaAddUnloadedBlueprint(FSimulatedEditor& Editor)
	{
		const FString PackageName = TEXT("/Game/Vessa/EUB_AssetAudit");
		FZorvekMCPBridgeAssetData Entry;
		Entry.PackageName = PackageName;
		Entry.PackagePath = TEXT("/Game/Vessa");
		Entry.AssetName = TEXT("EUB_AssetAudit");
		Entry.AssetClassPath = SimulatedVessa::EditorUtilityBlueprintClassPath;
		Entry.ObjectPath = PackageName + TEXT(".EUB_AssetAudit");
		Entry.Tags.Add({TEXT("ParentClass"), FString::Printf(TEXT("/Script/CoreUObject.Class'%s'"), SimulatedVessa::ExtensionBaseClassPath)});
		Entry.Tags.Add({TEXT("NativeParentClass"), FString::Printf(TEXT("/Script/CoreUObject.Class'%s'"), SimulatedVessa::ExtensionBaseClassPath)});
		Editor.AddRegistryEntry(Entry);

		Editor.GetVessaState().PendingBlueprintLoads.Add(Entry.ObjectPath, [PackageName](FSimulatedEditor& Ed)
		{
			FString Error;
			FSimulatedType* UtilityBlueprintClass = Ed.FindTypeByPath(SimulatedVessa::EditorUtilityBlueprintClassPath);
			FSimulatedObject* Package = Ed.FindOrCreatePackage(PackageName);
			if (!UtilityBlueprintClass || !Ed.CreateObject(UtilityBlueprintClass, Package, TEXT("EUB_AssetAudit"), Error))
			{
				return false;
			}
			FSimulatedType* Class = VessaAddSampleClass(Ed, TEXT("/Game/Vessa/EUB_AssetAudit.EUB_AssetAudit_C"), TEXT(""),
				TEXT("Audits the project's assets (an Editor Utility Blueprint found through the asset registry)."));
			FSimulatedEditor* EditorPtr = &Ed;
			AddFunction(Ed, Class, TEXT("CountAssetsOfClass"), VessaBlueprintFunctionFlags | HasOutParms,
				{{TEXT("ClassPath"), TEXT("FString"), 0}, {TEXT("AssetCount"), TEXT("int32"), OutParm}},
				{{TEXT("Category"), TEXT("Vessa Queries|Audit")}, {TEXT("ToolTip"), TEXT("Count the registry's assets of one class path.")}},
				[EditorPtr](FSimulatedObject&, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
				{
					Values[1].Integer = 0;
					for (const FZorvekMCPBridgeAssetData& Asset : EditorPtr->GetRegistry())
					{
						Values[1].Integer += Asset.AssetClassPath.Equals(Values[0].Text, ESearchCase::IgnoreCase) ? 1 : 0;
					}
				});
			return true;
		});
	}
}

void SimulatedVessa::RegisterSamples(FSimulatedEditor& Editor)
{
	EnsurePluginClasses(Editor);
	VessaAddLevelTools(Editor);
	VessaAddParameterShowcase(Editor);
	VessaAddSmallSamples(Editor);
	VessaAddUnloadedBlueprint(Editor);
}
