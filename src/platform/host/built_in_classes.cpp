// The window classes that are there before a program registers any: the controls and the boxes are ordinary
// windows of the layer.
#include <array>

#include "platform/host/api/comctl32.h"
#include "platform/host/boxes/box.h"
#include "platform/host/controls/control.h"
#include "platform/host/controls/procedures.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

constexpr auto CLASSES = std::to_array<BuiltInClass>({
    {u"Static", StaticProcedure, CS_DBLCLKS | CS_PARENTDC, CONTROL_EXTRA_BYTES},
    {u"Edit", EditProcedure, CS_DBLCLKS | CS_PARENTDC, CONTROL_EXTRA_BYTES},
    {u"Button", ButtonProcedure, CS_DBLCLKS | CS_PARENTDC | CS_VREDRAW | CS_HREDRAW, CONTROL_EXTRA_BYTES},
    {u"ComboBox", ComboProcedure, CS_DBLCLKS | CS_PARENTDC | CS_VREDRAW | CS_HREDRAW, CONTROL_EXTRA_BYTES},
    {u"ComboLBox", ComboListProcedure, CS_DBLCLKS | CS_SAVEBITS, CONTROL_EXTRA_BYTES},
    {WC_TABCONTROLW, TabProcedure, CS_DBLCLKS | CS_GLOBALCLASS | CS_VREDRAW | CS_HREDRAW,
     CONTROL_EXTRA_BYTES},
    {WC_LISTVIEWW, ListProcedure, CS_DBLCLKS | CS_GLOBALCLASS, CONTROL_EXTRA_BYTES},
    {u"#32770", BoxProcedure, CS_DBLCLKS | CS_SAVEBITS, CONTROL_EXTRA_BYTES},
});

}  // namespace

const std::span<const BuiltInClass> BUILT_IN_CLASSES = CLASSES;

}  // namespace host
