// The window classes that exist before the program registers any: those of the controls and the boxes.
#include <array>

#include "platform/host/api/comctl32.h"
#include "platform/host/boxes/box.h"
#include "platform/host/controls/control.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

constexpr auto CLASSES = std::to_array<BuiltInClass>({
    {u"Static", StaticProcedure},
    {u"Edit", EditProcedure},
    {u"Button", ButtonProcedure},
    {u"ComboBox", ComboProcedure},
    {u"ComboLBox", ComboListProcedure},
    {WC_TABCONTROLW, TabProcedure},
    {WC_LISTVIEWW, ListProcedure},
    {u"#32770", BoxProcedure},
});

}  // namespace

const std::span<const BuiltInClass> BUILT_IN_CLASSES = CLASSES;
const int BUILT_IN_EXTRA_BYTES = CONTROL_EXTRA_BYTES;

}  // namespace host
