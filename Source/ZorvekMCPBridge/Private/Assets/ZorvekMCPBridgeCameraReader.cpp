#include "Assets/ZorvekMCPBridgeAssetReaders.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	const TCHAR* const GameplayCamerasScriptPrefix = TEXT("/Script/GameplayCameras.");
	constexpr int32 MaxCameraGraphDepth = 6;
	constexpr int32 CameraNodePropertyLimit = 40;

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
				// Gathered first, so the recursion does not run inside the property walk.
				TArray<TPair<FZorvekMCPBridgeObjectHandle, FString>> Referenced;
				Reflection.EnumerateProperties(Object, [this, &Referenced](const FZorvekMCPBridgePropertyCursor& Property)
				{
					if (Property.HasAnyFlags(ZorvekMCPBridgePropertyFlags::Transient | ZorvekMCPBridgePropertyFlags::Deprecated))
					{
						return true;
					}
					if (Property.GetKind() == EZorvekMCPBridgePropertyKind::ObjectReference)
					{
						const FZorvekMCPBridgeObjectHandle Child = Property.GetReferencedObject();
						if (IsGameplayCameraObject(Child))
						{
							Referenced.Add({Child, Property.GetName()});
						}
					}
					else if (Property.GetKind() == EZorvekMCPBridgePropertyKind::Array)
					{
						const int32 Count = Property.GetArrayNum();
						for (int32 Index = 0; Index < Count; ++Index)
						{
							const FZorvekMCPBridgePropertyCursor Element = Property.GetArrayElement(Index);
							if (Element.GetKind() != EZorvekMCPBridgePropertyKind::ObjectReference)
							{
								break;
							}
							const FZorvekMCPBridgeObjectHandle Child = Element.GetReferencedObject();
							if (IsGameplayCameraObject(Child))
							{
								Referenced.Add({Child, FString::Printf(TEXT("%s[%d]"), *Property.GetName(), Index)});
							}
						}
					}
					return true;
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

		// Since 5.5 a camera asset holds no rig list of its own: its director does (a single
		// director's CameraRig, or the rigs that another director's properties, arrays and array
		// elements of structs reference).
		void GatherDirectorRigs(FZorvekMCPBridgeObjectHandle Director, TArray<FZorvekMCPBridgeObjectHandle>& OutRigs) const
		{
			auto AddIfRig = [this, &OutRigs](const FZorvekMCPBridgePropertyCursor& Value)
			{
				const FZorvekMCPBridgeObjectHandle Candidate = Value.GetReferencedObject();
				if (Candidate.IsValid() && !OutRigs.Contains(Candidate) && Objects.IsA(Candidate, TEXT("/Script/GameplayCameras.CameraRigAsset")))
				{
					OutRigs.Add(Candidate);
				}
			};
			Reflection.EnumerateProperties(Director, [&AddIfRig](const FZorvekMCPBridgePropertyCursor& Property)
			{
				if (Property.HasAnyFlags(ZorvekMCPBridgePropertyFlags::Transient | ZorvekMCPBridgePropertyFlags::Deprecated))
				{
					return true;
				}
				AddIfRig(Property);
				const int32 Count = Property.GetArrayNum();
				for (int32 Index = 0; Index < Count; ++Index)
				{
					const FZorvekMCPBridgePropertyCursor Element = Property.GetArrayElement(Index);
					AddIfRig(Element);
					Element.EnumerateStructFields([&AddIfRig](const FZorvekMCPBridgePropertyCursor& Field)
					{
						AddIfRig(Field);
						return true;
					});
				}
				return true;
			});
		}

		void AddCameraAssetSection(const TSharedPtr<FJsonObject>& Result, FZorvekMCPBridgeObjectHandle Asset) const
		{
			const FZorvekMCPBridgeObjectHandle Director = Reflection.FindProperty(Asset, TEXT("CameraDirector")).GetReferencedObject();
			Result->SetObjectField(TEXT("camera_director"), MakeSummaryNode(Director, TEXT("camera_director")));

			const FZorvekMCPBridgePropertyCursor RigList = Reflection.FindProperty(Asset, TEXT("CameraRigs"));
			if (RigList.IsValid())
			{
				ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("camera_rigs"), MakeSummaryNodes(RigList, TEXT("camera_rig")));
				Result->SetStringField(TEXT("camera_rigs_source"), TEXT("CameraRigs"));
			}
			else
			{
				TArray<FZorvekMCPBridgeObjectHandle> Rigs;
				if (Director.IsValid())
				{
					GatherDirectorRigs(Director, Rigs);
				}
				TArray<TSharedPtr<FJsonValue>> RigNodes;
				for (const FZorvekMCPBridgeObjectHandle& Rig : Rigs)
				{
					RigNodes.Add(MakeShared<FJsonValueObject>(MakeSummaryNode(Rig, TEXT("camera_rig"))));
				}
				ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("camera_rigs"), RigNodes);
				Result->SetStringField(TEXT("camera_rigs_source"), Director.IsValid() ? TEXT("CameraDirector") : TEXT("not_found"));
			}

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
