#include "Tools/ZorvekMCPBridgePcgCityTools.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Pcg/ZorvekMCPBridgePcgProbe.h"
#include "Pcg/ZorvekMCPBridgePcgSplineBounds.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"
#include "World/ZorvekMCPBridgeActorReadback.h"
#include "World/ZorvekMCPBridgeWorldTransformArguments.h"

namespace
{
	using namespace ZorvekMCPBridgePcgSplineBounds;
	using ZorvekMCPBridgeToolArguments::ReadBool;
	using ZorvekMCPBridgeToolArguments::ReadString;
	using ZorvekMCPBridgeWorldTransformArguments::FNumberOverride;

	const TCHAR* const PcgCityNotSampledNote = TEXT("The spline marks rectangular bounds only: roads are straight strips placed inside them, never sampled along the spline (pcg_spline_road_sampling is unsupported).");

	// Reads the numbers in order and keeps the first refusal.
	struct FPcgCityNumbers
	{
		FString Error;

		FNumberOverride Read(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key)
		{
			FNumberOverride Number;
			const FString Refusal = ZorvekMCPBridgeWorldTransformArguments::ReadNumber(Arguments, Key, Number);
			if (Error.IsEmpty())
			{
				Error = Refusal;
			}
			return Number;
		}

		// A size present and outside the documented range is refused with its key.
		void CheckSize(const TCHAR* Key, const FNumberOverride& Size)
		{
			if (Error.IsEmpty() && Size.bPresent && (Size.Value < MinSize || Size.Value > MaxSize))
			{
				Error = FString::Printf(TEXT("%s must be between 100 and 1000000 (centimetres)."), Key);
			}
		}
	};

	struct FPcgCityCreateSplineParams
	{
		bool bAllowCurrentLevel = false;
		FString ActorLabel;
		FNumberOverride Length;
		FNumberOverride Width;
		FNumberOverride LocationX;
		FNumberOverride LocationY;
		FNumberOverride LocationZ;
		FNumberOverride RotationYaw;
		FString Error;

		static FPcgCityCreateSplineParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FPcgCityCreateSplineParams Params;
			Params.bAllowCurrentLevel = ReadBool(Arguments, TEXT("AllowCurrentLevel"), false);
			Params.ActorLabel = ReadString(Arguments, TEXT("ActorLabel"), FString()).TrimStartAndEnd();
			FPcgCityNumbers Numbers;
			Params.Length = Numbers.Read(Arguments, TEXT("Length"));
			Params.Width = Numbers.Read(Arguments, TEXT("Width"));
			Params.LocationX = Numbers.Read(Arguments, TEXT("LocationX"));
			Params.LocationY = Numbers.Read(Arguments, TEXT("LocationY"));
			Params.LocationZ = Numbers.Read(Arguments, TEXT("LocationZ"));
			Params.RotationYaw = Numbers.Read(Arguments, TEXT("RotationYaw"));
			Numbers.CheckSize(TEXT("Length"), Params.Length);
			Numbers.CheckSize(TEXT("Width"), Params.Width);
			Params.Error = Numbers.Error;
			return Params;
		}
	};

	struct FPcgCitySetSplineParams
	{
		FString ActorNameOrLabel;
		bool bAllowCurrentLevel = false;
		FNumberOverride Length;
		FNumberOverride Width;
		FString Error;

		static FPcgCitySetSplineParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FPcgCitySetSplineParams Params;
			Params.ActorNameOrLabel = ReadString(Arguments, TEXT("ActorNameOrLabel"), FString());
			Params.bAllowCurrentLevel = ReadBool(Arguments, TEXT("AllowCurrentLevel"), false);
			FPcgCityNumbers Numbers;
			Params.Length = Numbers.Read(Arguments, TEXT("Length"));
			Params.Width = Numbers.Read(Arguments, TEXT("Width"));
			Numbers.CheckSize(TEXT("Length"), Params.Length);
			Numbers.CheckSize(TEXT("Width"), Params.Width);
			Params.Error = Numbers.Error;
			return Params;
		}
	};

	TSharedPtr<FJsonObject> FailPcgCityTool(const TCHAR* SuccessKey, const FString& Message)
	{
		TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
		Payload->SetBoolField(TEXT("success"), false);
		if (FCString::Strcmp(SuccessKey, TEXT("success")) != 0)
		{
			Payload->SetBoolField(SuccessKey, false);
		}
		Payload->SetStringField(TEXT("error"), Message);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, true);
	}

	TSharedPtr<FJsonObject> MakePcgCityRectangleJson(const FRectangle& Rectangle)
	{
		TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
		Object->SetNumberField(TEXT("length"), Rectangle.Length);
		Object->SetNumberField(TEXT("width"), Rectangle.Width);
		return Object;
	}

	// SetActorLabelUnique's numbering for a label the client chose or the default: the label when
	// no actor carries it, else the first of Label2, Label3... that is free.
	FString MakePcgCityUniqueLabel(const IZorvekMCPBridgeWorld& World, const FString& Label)
	{
		TSet<FString> Taken;
		for (const FZorvekMCPBridgeActorEntry& Actor : World.GetAllLevelActors())
		{
			Taken.Add(Actor.Label.ToLower());
		}
		FString Candidate = Label;
		for (int32 Number = 2; Taken.Contains(Candidate.ToLower()); ++Number)
		{
			Candidate = FString::Printf(TEXT("%s%d"), *Label, Number);
		}
		return Candidate;
	}

	// The actor the client named with its spline component, or the refusal.
	struct FPcgCitySplineActor
	{
		FZorvekMCPBridgeActorEntry Entry;
		FZorvekMCPBridgeActorSnapshot Snapshot;
		FZorvekMCPBridgeObjectHandle Spline;
		FString Error;
	};

	FPcgCitySplineActor FindPcgCitySplineActor(IZorvekMCPBridgeEditorPort& Port, const FString& ActorNameOrLabel)
	{
		FPcgCitySplineActor Found;
		IZorvekMCPBridgeWorld& World = Port.GetWorld();
		if (!ZorvekMCPBridgeActorReadback::FindActor(World, ActorNameOrLabel, Found.Entry) || !World.ReadActor(Found.Entry.Actor, Found.Snapshot))
		{
			Found.Error = ZorvekMCPBridgeActorReadback::MakeActorNotFoundMessage(ActorNameOrLabel);
			return Found;
		}
		Found.Spline = FindSplineComponent(Port, Found.Snapshot);
		if (!Found.Spline.IsValid())
		{
			Found.Error = FString::Printf(TEXT("Actor '%s' has no spline component."), *Found.Entry.Label);
		}
		return Found;
	}

	FString FindPcgCityComponentName(const FZorvekMCPBridgeActorSnapshot& Snapshot, FZorvekMCPBridgeObjectHandle Component)
	{
		for (const FZorvekMCPBridgeActorComponentSnapshot& Candidate : Snapshot.Components)
		{
			if (Candidate.Component == Component)
			{
				return Candidate.Name;
			}
		}
		return FString();
	}

	// Reads the spline and the actor after a change, for the result.
	bool ReadPcgCitySplineResult(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Actor, FZorvekMCPBridgeObjectHandle Spline, bool bSelected,
		TSharedPtr<FJsonObject>& OutActor, TSharedPtr<FJsonObject>& OutSpline, FString& OutError)
	{
		FZorvekMCPBridgeActorSnapshot Snapshot;
		FSplineState State;
		if (!Port.GetWorld().ReadActor(Actor, Snapshot) || !ReadSpline(Port, Spline, State, OutError))
		{
			OutError = OutError.IsEmpty() ? TEXT("The spline bounds actor could not be read back.") : OutError;
			return false;
		}
		OutActor = ZorvekMCPBridgeActorReadback::MakeActorReadback(Snapshot, bSelected);
		OutSpline = MakeSplineBoundsJson(FindPcgCityComponentName(Snapshot, Spline), State);
		return true;
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgCityTools::HandleCreateSplineBoundsActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* const ToolName = TEXT("pcg_create_spline_bounds_actor");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("create_spline_bounds_actor"));
	}
	const FPcgCityCreateSplineParams Params = FPcgCityCreateSplineParams::Read(Arguments);
	if (!Params.bAllowCurrentLevel)
	{
		return FailPcgCityTool(TEXT("created"), TEXT("pcg_create_spline_bounds_actor requires AllowCurrentLevel=true because this mutates the current editor world."));
	}
	FZorvekMCPBridgeWorldInfo WorldInfo;
	if (!World.IsActorSubsystemAvailable() || !World.GetEditorWorld(WorldInfo))
	{
		return FailPcgCityTool(TEXT("created"), TEXT("Editor actor subsystem or editor world is unavailable."));
	}
	if (!Params.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("created"), Params.Error);
	}
	FZorvekMCPBridgeTypeInfo SplineClass;
	if (!Port.GetObjects().LoadClass(SplineComponentClassPath, SplineClass))
	{
		return FailPcgCityTool(TEXT("created"), TEXT("The engine's spline component class /Script/Engine.SplineComponent could not be loaded."));
	}

	FRectangle Rectangle;
	Rectangle.Length = Params.Length.bPresent ? Params.Length.Value : DefaultLength;
	Rectangle.Width = Params.Width.bPresent ? Params.Width.Value : DefaultWidth;
	const FZorvekMCPBridgeVector Location = {Params.LocationX.Value, Params.LocationY.Value, Params.LocationZ.Value};
	FZorvekMCPBridgeRotator Rotation;
	Rotation.Yaw = Params.RotationYaw.Value;
	const FZorvekMCPBridgeObjectHandle Actor = World.SpawnActorFromClass(ActorClassPath, Location, Rotation);
	if (!Actor.IsValid())
	{
		return FailPcgCityTool(TEXT("created"), FString::Printf(TEXT("Could not spawn actor of class '%s'."), ActorClassPath));
	}
	// From here a failure takes the new actor away again, so nothing half made stays behind.
	FString Error;
	const FZorvekMCPBridgeObjectHandle Spline = World.AddInstanceComponent(Actor, SplineClass.Path, ComponentName);
	if (!Spline.IsValid())
	{
		Error = TEXT("Could not add a spline component to the spline bounds actor.");
	}
	else if (!WriteRectangle(Port, Spline, Rectangle, Error))
	{
		Error = Error.IsEmpty() ? TEXT("Could not write the spline rectangle.") : Error;
	}
	if (!Error.IsEmpty())
	{
		World.DestroyActors({Actor});
		return FailPcgCityTool(TEXT("created"), Error);
	}
	// An empty actor may spawn without a root, so the spawn location had nothing to move: the
	// transform is set again now that the spline can carry it.
	FZorvekMCPBridgeTransform Transform;
	Transform.Location = Location;
	Transform.Rotation = Rotation;
	World.SetActorTransform(Actor, Transform);
	World.SetActorLabel(Actor, MakePcgCityUniqueLabel(World, Params.ActorLabel.IsEmpty() ? FString(DefaultLabel) : Params.ActorLabel));
	World.AddActorTags(Actor, {FName(ZorvekMCPBridgeActorReadback::BridgeTag), FName(ZorvekMCPBridgeActorReadback::ReproTag),
		FName(ZorvekMCPBridgeActorReadback::VisualPcgTag), FName(SplineBoundsTag)});
	World.SelectNothing();
	World.SetActorSelectionState(Actor, true);

	TSharedPtr<FJsonObject> ActorJson;
	TSharedPtr<FJsonObject> SplineJson;
	const bool bRead = ReadPcgCitySplineResult(Port, Actor, Spline, true, ActorJson, SplineJson, Error);
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), bRead);
	Payload->SetBoolField(TEXT("created"), true);
	Payload->SetBoolField(TEXT("placed"), true);
	Payload->SetObjectField(TEXT("actor"), ActorJson.IsValid() ? ActorJson : MakeShared<FJsonObject>());
	if (bRead)
	{
		Payload->SetObjectField(TEXT("spline_bounds"), SplineJson);
	}
	else
	{
		Payload->SetStringField(TEXT("error"), Error);
	}
	Payload->SetStringField(TEXT("note"), PcgCityNotSampledNote);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, !bRead);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgCityTools::HandleInspectSplineBoundsActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* const ToolName = TEXT("pcg_inspect_spline_bounds_actor");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("inspect_spline_bounds_actor"));
	}
	const FString ActorNameOrLabel = ReadString(Arguments, TEXT("ActorNameOrLabel"), FString());
	const FPcgCitySplineActor Found = FindPcgCitySplineActor(Port, ActorNameOrLabel);
	if (!Found.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("success"), Found.Error);
	}
	TSharedPtr<FJsonObject> ActorJson;
	TSharedPtr<FJsonObject> SplineJson;
	FString Error;
	if (!ReadPcgCitySplineResult(Port, Found.Entry.Actor, Found.Spline, World.GetSelectedLevelActors().Contains(Found.Entry.Actor), ActorJson, SplineJson, Error))
	{
		return FailPcgCityTool(TEXT("success"), Error);
	}
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("is_spline_bounds_actor"), Found.Entry.Tags.Contains(FName(SplineBoundsTag)));
	Payload->SetObjectField(TEXT("actor"), ActorJson);
	Payload->SetObjectField(TEXT("spline_bounds"), SplineJson);
	Payload->SetStringField(TEXT("note"), PcgCityNotSampledNote);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgCityTools::HandleSetSplineBoundsActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* const ToolName = TEXT("pcg_set_spline_bounds_actor");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("set_spline_bounds_actor"));
	}
	const FPcgCitySetSplineParams Params = FPcgCitySetSplineParams::Read(Arguments);
	if (!Params.bAllowCurrentLevel)
	{
		return FailPcgCityTool(TEXT("updated"), TEXT("pcg_set_spline_bounds_actor requires AllowCurrentLevel=true because this mutates the current editor world."));
	}
	if (!Params.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("updated"), Params.Error);
	}
	if (!Params.Length.bPresent && !Params.Width.bPresent)
	{
		return FailPcgCityTool(TEXT("updated"), TEXT("pcg_set_spline_bounds_actor requires Length or Width."));
	}
	const FPcgCitySplineActor Found = FindPcgCitySplineActor(Port, Params.ActorNameOrLabel);
	if (!Found.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("updated"), Found.Error);
	}
	// Only the bridge's own bounds actors are reshaped; a spline the user drew stays as it is.
	if (!Found.Entry.Tags.Contains(FName(SplineBoundsTag)))
	{
		return FailPcgCityTool(TEXT("updated"), FString::Printf(TEXT("'%s' is not a spline bounds actor from pcg_create_spline_bounds_actor."), *Found.Entry.Label));
	}
	FSplineState Before;
	FString Error;
	if (!ReadSpline(Port, Found.Spline, Before, Error))
	{
		return FailPcgCityTool(TEXT("updated"), Error);
	}
	const FRectangle Previous = MeasureRectangle(Before);
	FRectangle Rectangle = Previous;
	Rectangle.Length = Params.Length.bPresent ? Params.Length.Value : Previous.Length;
	Rectangle.Width = Params.Width.bPresent ? Params.Width.Value : Previous.Width;
	if (!WriteRectangle(Port, Found.Spline, Rectangle, Error))
	{
		return FailPcgCityTool(TEXT("updated"), Error);
	}

	TSharedPtr<FJsonObject> ActorJson;
	TSharedPtr<FJsonObject> SplineJson;
	const bool bRead = ReadPcgCitySplineResult(Port, Found.Entry.Actor, Found.Spline, World.GetSelectedLevelActors().Contains(Found.Entry.Actor), ActorJson, SplineJson, Error);
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), bRead);
	Payload->SetBoolField(TEXT("updated"), true);
	Payload->SetObjectField(TEXT("previous_rectangle"), MakePcgCityRectangleJson(Previous));
	Payload->SetObjectField(TEXT("actor"), ActorJson.IsValid() ? ActorJson : MakeShared<FJsonObject>());
	if (bRead)
	{
		Payload->SetObjectField(TEXT("spline_bounds"), SplineJson);
	}
	else
	{
		Payload->SetStringField(TEXT("error"), Error);
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, !bRead);
}
