#include "NQM_ITransport.h"

NQM_ITransport::~NQM_ITransport() = default;
