// The data files that most tests of the commands are run on.
#pragma once

#include "support/files.h"

#include <string>

namespace wq_test::data_files {

inline const std::string cavendish = shipped("cavendish.txt");
inline const std::string norris = shipped("nist_norris.txt");
inline const std::string resistivity = shipped("nist_sirstv.txt");
inline const std::string instrument1 = shipped("nist_sirstv_instrument1.txt");
inline const std::string instrument2 = shipped("nist_sirstv_instrument2.txt");
inline const std::string seedlings = shipped("seedlings.txt");
inline const std::string peas = shipped("mendel_peas.txt");
inline const std::string digits = shipped("pi_e_digits.txt");
inline const std::string pigeons = shipped("directions.txt");
inline const std::string supplements = shipped("toothgrowth_supp.txt");

}  // namespace wq_test::data_files
