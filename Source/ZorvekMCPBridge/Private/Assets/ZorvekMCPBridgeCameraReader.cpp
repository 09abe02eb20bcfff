#include "Assets/ZorvekMCPBridgeAssetReaders.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	const TCHAR* const GameplayCamerasScriptPrefix = TEXT("/Script/GameplayCameras.");
	constexpr int32 MaxCameraGraphDepth = 6;
	constexpr int32 CameraNodePropertyLimit = 40;
	// How many structs and arrays deep a property's value is searched for camera objects; the
	// same bound as struct export. A director's redirect table needs three (table, entry array,
	// entry).
	constexpr int32 MaxContainerDepth = 4;
	const TCHAR* const CameraRigAssetClassPath = TEXT("/Script/GameplayCameras.CameraRigAsset");
	const TCHAR* const CameraRigProxyAssetClassPath = TEXT("/Script/GameplayCameras.CameraRigProxyAsset");

	bool IsSkippedProperty(const FZorvekMCPBridgePropertyCursor& Property)
	{
		return Property.HasAnyFlags(ZorvekMCPBridgePropertyFlags::Transient | ZorvekMCPBridgePropertyFlags::Deprecated);
	}

	// Calls Visit with every object reference a value holds: the value itself, or, inside arrays
	// and structs down to MaxContainerDepth, their elements and fields. Path names where the
	// reference sits: "CameraRig", "Children[1]", "CameraRigProxyRedirectTable.Entries[0].CameraRig".
	// Null references are visited too (as invalid handles). Transient and deprecated struct
	// fields are skipped, as struct export skips them.
	void ForEachReferenceInValue(const FZorvekMCPBridgePropertyCursor& Value, const FString& Path, int32 ContainerDepth, TFunctionRef<void(FZorvekMCPBridgeObjectHandle, const FString&)> Visit)
	{
		switch (Value.GetKind())
		{
		case EZorvekMCPBridgePropertyKind::ObjectReference:
			Visit(Value.GetReferencedObject(), Path);
			break;
		case EZorvekMCPBridgePropertyKind::Array:
			if (ContainerDepth < MaxContainerDepth)
			{
				const int32 Count = Value.GetArrayNum();
				for (int32 Index = 0; Index < Count; ++Index)
				{
					ForEachReferenceInValue(Value.GetArrayElement(Index), FString::Printf(TEXT("%s[%d]"), *Path, Index), ContainerDepth + 1, Visit);
				}
			}
			break;
		case EZorvekMCPBridgePropertyKind::Struct:
			if (ContainerDepth < MaxContainerDepth)
			{
				Value.EnumerateStructFields([&Path, ContainerDepth, &Visit](const FZorvekMCPBridgePropertyCursor& Field)
				{
					if (!IsSkippedProperty(Field))
					{
						ForEachReferenceInValue(Field, Path + TEXT(".") + Field.GetName(), ContainerDepth + 1, Visit);
					}
					return true;
				});
			}
			break;
		default:
			break;
		}
	}

	struct FCameraKind
	{
		const TCHAR* ClassName;
		const TCHAR* AssetKind;
	};
	const FCameraKind CameraKinds[] = {
		{TEXT("CameraAsset"), TEXT("camera_asset")},
		{TEXT("CameraRigAsset"), TEXT("camera_rig_asset")},
		{TEXT("CameraRigProxyAsset"), TEXT("camera_rig_proxy_asset")},
		{TEXT("CameraVariableCollection"), TEXT("camera_variable_collection")}};

	class FCameraReader
	{
	public:
		FCameraReader(IZorvekMCPBridgeEditorPort& InPort, TArray<TSharedPtr<FJsonValue>>& InPartialFailures)
			: Port(InPort)
			, Objects(InPort.GetObjects())
			, Reflection(InPort.GetReflection())
			, PartialFailures(InPartialFailures)
		{
		}

		bool IsGameplayCameraObject(FZorvekMCPBridgeObjectHandle Object) const
		{
			return Object.IsValid() && Objects.GetClassInfo(Object).Path.Contains(GameplayCamerasScriptPrefix);
		}

		// The identity, why the object is listed, and whether it is a camera object. A null
		// object gives the role alone.
		TSharedPtr<FJsonObject> MakeSummaryNode(FZorvekMCPBridgeObjectHandle Object, const FString& Role) const
		{
			TSharedPtr<FJsonObject> Node = ZorvekMCPBridgeAssets::MakeObjectIdentityJson(Objects, Object);
			Node->SetStringField(TEXT("role"), Role);
			Node->SetBoolField(TEXT("is_gameplay_camera_object"), IsGameplayCameraObject(Object));
			return Node;
		}

		// One visited set for the whole graph: any second visit, loop or merge, is a cycle node.
		TSharedPtr<FJsonObject> BuildGraphNode(FZorvekMCPBridgeObjectHandle Object, const FString& Role, int32 Depth)
		{
			TSharedPtr<FJsonObject> Node = MakeSummaryNode(Object, Role);
			if (Visited.Contains(Object))
			{
				Node->SetBoolField(TEXT("cycle"), true);
				return Node;
			}
			Visited.Add(Object);
			Node->SetNumberField(TEXT("depth"), Depth);

			TArray<TSharedPtr<FJsonValue>> Children;
			if (Depth < MaxCameraGraphDepth)
			{
				// Gathered first, so the recursion does not run inside the property walk. References
				// held in structs and arrays of structs (a director's redirect table) count like
				// direct ones.
				TArray<TPair<FZorvekMCPBridgeObjectHandle, FString>> Referenced;
				ForEachReferenceInObject(Object, [this, &Referenced](FZorvekMCPBridgeObjectHandle Child, const FString& Path)
				{
					if (IsGameplayCameraObject(Child))
					{
						Referenced.Add({Child, Path});
					}
				});
				for (const TPair<FZorvekMCPBridgeObjectHandle, FString>& Child : Referenced)
				{
					Children.Add(MakeShared<FJsonValueObject>(BuildGraphNode(Child.Key, Child.Value, Depth + 1)));
				}
			}
			Node->SetArrayField(TEXT("children"), Children);
			Node->SetNumberField(TEXT("child_count"), Children.Num());

			TArray<TSharedPtr<FJsonValue>> IgnoredReferences;
			Node->SetObjectField(TEXT("properties"), ZorvekMCPBridgeAssets::ExportObjectProperties(Port, Object, CameraNodePropertyLimit, IgnoredReferences, PartialFailures));
			return Node;
		}

		// Summary nodes of the elements of an array of object references; a null element gives a
		// node with the role alone, a missing property an empty array.
		TArray<TSharedPtr<FJsonValue>> MakeSummaryNodes(const FZorvekMCPBridgePropertyCursor& ArrayValue, const FString& Role) const
		{
			TArray<TSharedPtr<FJsonValue>> Nodes;
			const int32 Count = ArrayValue.GetArrayNum();
			for (int32 Index = 0; Index < Count; ++Index)
			{
				Nodes.Add(MakeShared<FJsonValueObject>(MakeSummaryNode(ArrayValue.GetArrayElement(Index).GetReferencedObject(), Role)));
			}
			return Nodes;
		}

		void AddObjectArraySection(const TSharedPtr<FJsonObject>& Result, FZorvekMCPBridgeObjectHandle Object, const TCHAR* PropertyName, const TCHAR* Key, const TCHAR* Role) const
		{
			ZorvekMCPBridgeAssets::SetNamedArray(Result, Key, MakeSummaryNodes(Reflection.FindProperty(Object, PropertyName), Role));
		}

		// Every reference held by the object's properties (transient and deprecated ones
		// skipped), their arrays and structs included.
		void ForEachReferenceInObject(FZorvekMCPBridgeObjectHandle Object, TFunctionRef<void(FZorvekMCPBridgeObjectHandle, const FString&)> Visit) const
		{
			Reflection.EnumerateProperties(Object, [&Visit](const FZorvekMCPBridgePropertyCursor& Property)
			{
				if (!IsSkippedProperty(Property))
				{
					ForEachReferenceInValue(Property, Property.GetName(), 0, Visit);
				}
				return true;
			});
		}

		// Since 5.5 a camera asset holds no rig list of its own: its director does. A single
		// director names its rig in CameraRig; every director may hold rigs and rig proxies in
		// its CameraRigProxyRedirectTable (struct, entry array, entry), and other directors in
		// arrays of entries. Each object is listed once, in property order.
		void GatherDirectorRigs(FZorvekMCPBridgeObjectHandle Director, TArray<FZorvekMCPBridgeObjectHandle>& OutRigs, TArray<FZorvekMCPBridgeObjectHandle>& OutProxies) const
		{
			ForEachReferenceInObject(Director, [this, &OutRigs, &OutProxies](FZorvekMCPBridgeObjectHandle Candidate, const FString&)
			{
				if (!Candidate.IsValid())
				{
					return;
				}
				if (Objects.IsA(Candidate, CameraRigAssetClassPath))
				{
					OutRigs.AddUnique(Candidate);
				}
				else if (Objects.IsA(Candidate, CameraRigProxyAssetClassPath))
				{
					OutProxies.AddUnique(Candidate);
				}
			});
		}

		TArray<TSharedPtr<FJsonValue>> MakeSummaryNodes(const TArray<FZorvekMCPBridgeObjectHandle>& List, const FString& Role) const
		{
			TArray<TSharedPtr<FJsonValue>> Nodes;
			for (const FZorvekMCPBridgeObjectHandle& Object : List)
			{
				Nodes.Add(MakeShared<FJsonValueObject>(MakeSummaryNode(Object, Role)));
			}
			return Nodes;
		}

		void AddCameraAssetSection(const TSharedPtr<FJsonObject>& Result, FZorvekMCPBridgeObjectHandle Asset) const
		{
			const FZorvekMCPBridgeObjectHandle Director = Reflection.FindProperty(Asset, TEXT("CameraDirector")).GetReferencedObject();
			Result->SetObjectField(TEXT("camera_director"), MakeSummaryNode(Director, TEXT("camera_director")));

			// 5.7 still reflects the old rig list, as CameraRigs with CPF_Deprecated; the camera
			// system ignores it and it is not saved, so only a list that is not deprecated (an
			// asset of an engine before 5.5) is read.
			const FZorvekMCPBridgePropertyCursor RigList = Reflection.FindProperty(Asset, TEXT("CameraRigs"));
			TArray<FZorvekMCPBridgeObjectHandle> Rigs;
			TArray<FZorvekMCPBridgeObjectHandle> Proxies;
			if (Director.IsValid())
			{
				GatherDirectorRigs(Director, Rigs, Proxies);
			}
			if (RigList.IsValid() && !IsSkippedProperty(RigList))
			{
				ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("camera_rigs"), MakeSummaryNodes(RigList, TEXT("camera_rig")));
				Result->SetStringField(TEXT("camera_rigs_source"), TEXT("CameraRigs"));
			}
			else
			{
				ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("camera_rigs"), MakeSummaryNodes(Rigs, TEXT("camera_rig")));
				Result->SetStringField(TEXT("camera_rigs_source"), Director.IsValid() ? TEXT("CameraDirector") : TEXT("not_found"));
			}
			ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("camera_rig_proxies"), MakeSummaryNodes(Proxies, TEXT("camera_rig_proxy")));

			AddObjectArraySection(Result, Asset, TEXT("EnterTransitions"), TEXT("enter_transitions"), TEXT("enter_transition"));
			AddObjectArraySection(Result, Asset, TEXT("ExitTransitions"), TEXT("exit_transitions"), TEXT("exit_transition"));
			AddObjectArraySection(Result, Asset, TEXT("AllSharedTransitionsObjects"), TEXT("shared_transition_objects"), TEXT("shared_transition_object"));
		}

		void AddCameraRigSection(const TSharedPtr<FJsonObject>& Result, FZorvekMCPBridgeObjectHandle Rig) const
		{
			const FZorvekMCPBridgeObjectHandle RootNode = Reflection.FindProperty(Rig, TEXT("RootNode")).GetReferencedObject();
			Result->SetObjectField(TEXT("root_node"), MakeSummaryNode(RootNode, TEXT("root_node")));

			// 5.6 split the interface parameter list into blendable and data parameters.
			const FZorvekMCPBridgePropertyCursor Interface = Reflection.FindProperty(Rig, TEXT("Interface"));
			const FZorvekMCPBridgePropertyCursor InterfaceParameters = Interface.FindStructField(TEXT("InterfaceParameters"));
			if (InterfaceParameters.IsValid() || !Interface.IsValid())
			{
				ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("interface_parameters"), MakeSummaryNodes(InterfaceParameters, TEXT("interface_parameter")));
				Result->SetStringField(TEXT("interface_parameters_source"), InterfaceParameters.IsValid() ? TEXT("Interface.InterfaceParameters") : TEXT("not_found"));
			}
			else
			{
				TArray<TSharedPtr<FJsonValue>> Parameters = MakeSummaryNodes(Interface.FindStructField(TEXT("BlendableParameters")), TEXT("interface_parameter"));
				Parameters.Append(MakeSummaryNodes(Interface.FindStructField(TEXT("DataParameters")), TEXT("interface_parameter")));
				ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("interface_parameters"), Parameters);
				Result->SetStringField(TEXT("interface_parameters_source"), TEXT("Interface.BlendableParameters+Interface.DataParameters"));
			}

			AddObjectArraySection(Result, Rig, TEXT("EnterTransitions"), TEXT("enter_transitions"), TEXT("enter_transition"));
			AddObjectArraySection(Result, Rig, TEXT("ExitTransitions"), TEXT("exit_transitions"), TEXT("exit_transition"));
			AddObjectArraySection(Result, Rig, TEXT("AllNodeTreeObjects"), TEXT("node_tree_objects"), TEXT("node_tree_object"));
			AddObjectArraySection(Result, Rig, TEXT("AllTransitionsObjects"), TEXT("transition_objects"), TEXT("transition_object"));
		}

	private:
		IZorvekMCPBridgeEditorPort& Port;
		IZorvekMCPBridgeObjects& Objects;
		IZorvekMCPBridgeReflection& Reflection;
		TArray<TSharedPtr<FJsonValue>>& PartialFailures;
		TSet<FZorvekMCPBridgeObjectHandle> Visited;
	};
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssets::ReadGameplayCameraAsset(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Asset, TArray<TSharedPtr<FJsonValue>>& OutPartialFailures)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	FCameraReader Reader(Port, OutPartialFailures);
	const bool bRecognized = Reader.IsGameplayCameraObject(Asset);
	const FString ClassName = Asset.IsValid() ? Port.GetObjects().GetClassInfo(Asset).Name : FString();

	FString AssetKind = bRecognized ? TEXT("gameplay_camera_object") : TEXT("unknown");
	for (const FCameraKind& Kind : CameraKinds)
	{
		if (bRecognized && ClassName.Equals(Kind.ClassName, ESearchCase::IgnoreCase))
		{
			AssetKind = Kind.AssetKind;
		}
	}
	Result->SetBoolField(TEXT("recognized"), bRecognized);
	Result->SetStringField(TEXT("asset_kind"), AssetKind);
	if (!bRecognized)
	{
		return Result;
	}

	Result->SetObjectField(TEXT("object_graph"), Reader.BuildGraphNode(Asset, TEXT("asset"), 0));
	if (ClassName.Equals(TEXT("CameraAsset"), ESearchCase::IgnoreCase))
	{
		Reader.AddCameraAssetSection(Result, Asset);
	}
	else if (ClassName.Equals(TEXT("CameraRigAsset"), ESearchCase::IgnoreCase))
	{
		Reader.AddCameraRigSection(Result, Asset);
	}
	return Result;
}
