// The data files that most tests of the commands are run on.
#pragma once

#include "support/files.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

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

// All data sets that are shipped, by what a line holds, as the folders of the reference data have it.
inline const std::map<std::string, std::vector<std::string>> shippedByKind = {
    {"values", {"cavendish.txt", "nist_numacc1.txt", "nist_numacc3.txt", "nist_sirstv_instrument1.txt", "nist_sirstv_instrument2.txt"}},
    {"pairs", {"nist_norris.txt"}},
    {"groups",
     {"nist_sirstv.txt", "nist_smls01.txt", "nist_smls02.txt", "nist_smls04.txt", "nist_smls05.txt", "nist_smls07.txt", "nist_smls08.txt",
      "toothgrowth_supp.txt"}},
    {"series", {"seedlings.txt"}},
    {"classes", {"mendel_peas.txt", "pi_e_digits.txt"}},
    {"angles", {"directions.txt"}},
};

// The data sets at hand of a kind, with those of WQ_REFERENCE_DATA.
inline std::vector<std::string> allOf(const std::string& kind)
{
    std::vector<std::string> files;
    for (const std::string& name : shippedByKind.at(kind)) files.push_back(shipped(name));
    if (const std::string folder = reference(kind); !folder.empty())
        for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace wq_test::data_files
