// Nothing of this library is called. It stands so that what is linked against its name loads.

namespace Dorv {}
