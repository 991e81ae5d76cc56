// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/exportformat.h"
#include "mcxml/ioexception.h"
#include "mcxml/mbtoutf8.h"
#include "mcxml/parseobj.h"
#include "mcxml/writetree.h"
#include "mcxml/xmlattribute.h"
#include "mcxml/xmldoctype.h"
#include "mcxml/xmlelement.h"
#include "mcxml/xmlinterface.h"
#include "mcxml/xmlobj.h"
#include "mcxml/xmlstring.h"
#include "mcxml/xmltext.h"
#include "mcxml/xmlutil.h"
