// Every kind of wrong node file, with the exact place and message. Nothing may have been started.
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace
{

struct bad_file {
    const char *name;
    std::string text;
    std::vector<std::string> problems; // without the file's name
};

void PrintTo(const bad_file &file, std::ostream *out)
{
    *out << file.name;
}

// Line 5 and following, after the parameters.
std::string after_ebcom(const std::string &text)
{
    return ebcom_table + text;
}

// A path whose fields start in line 6.
std::string path_with(const std::string &fields)
{
    return after_ebcom("[[path]]\n" + fields);
}

// The same with an address in line 6 and a port in line 7.
std::string good_path_with(const std::string &fields)
{
    return path_with("dst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\n" + fields);
}

// Six lines.
std::string pcep_table(const std::string &id)
{
    return "[[pcep]]\nid = " + id +
           "\nremote_id = 1\nlocal_mac = \"02:00:00:02:00:01\"\nremote_mac = \"02:00:00:02:00:02\"\nvlan = 1\n";
}

// Those with the ids from 1.
std::string pcep_tables(int count)
{
    std::string text;
    for (int id = 1; id <= count; ++id)
        text += pcep_table(std::to_string(id));
    return text;
}

// Three lines each.
std::string group_tables(int count)
{
    std::string text;
    for (int id = 1; id <= count; ++id)
        text += "[[multicast]]\nid = " + std::to_string(id) + "\nmembers = []\n";
    return text;
}

const std::string ports = "these do: 0, RLU1P to RLU1W, RLU2P to RLU2W, RLU3P to RLU3W, RLU4P to RLU4W";

const bad_file bad_files[] = {
    {"EmptyFile", "", {"1:1: [ebcom] is required"}},
    {"SyntaxError",
     "[ebcom]\nic_port_mtu = \n",
     {"2:15: Error while parsing key-value pair: expected value, saw '\\n'"}},
    {"NotUtf8", "[ebcom]\n# \xff\n", {"2:2: Encountered invalid utf-8 sequence"}},
    {"NestedTooDeep",
     "a = " + std::string(100'000, '['),
     {"1:37: Error while parsing value: exceeded maximum nested value depth of 32"}},
    {"TooManyDots", "\n\na" + std::string(1000, '.') + "a = 1\n", {"3:1: the line has more than 128 dots"}},
    {"UnknownTable",
     after_ebcom("[ebcon]\n[[paths]]\n[nod]\n"),
     {"5:2: unknown table \"ebcon\"; did you mean \"ebcom\"?", "6:3: unknown key \"paths\"; did you mean \"path\"?",
      "7:2: unknown table \"nod\"; did you mean \"node\"?"}},
    {"UnknownKey",
     after_ebcom("ethertype = 1\ncolour = 2\n"),
     {"5:1: unknown key \"ethertype\" in [ebcom]; did you mean \"ether_type\"?",
      "6:1: unknown key \"colour\" in [ebcom]"}},
    {"UnknownKeyInPath",
     good_path_with("  counts = 3\n"),
     {"8:3: unknown key \"counts\" in [[path]]; did you mean \"count\"?"}},
    {"UnknownKeyInShaping",
     good_path_with("shaping = { rate = 1, burts = 2, burst = 2, threshold = 256 }\n"),
     {"8:23: unknown key \"shaping.burts\" in [[path]]; did you mean \"shaping.burst\"?"}},
    {"KeyWithControlCharacters", after_ebcom("\"a\\u001b[31m\" = 1\n"), {"5:1: unknown key \"a?[31m\" in [ebcom]"}},
    {"MisspeltKeyIsNotMissingAsWell",
     "[ebcom]\nic_prot_mtu = 1500\nethertype = 0x88B5\nseting = [1, 2]\n",
     {"2:1: unknown key \"ic_prot_mtu\" in [ebcom]; did you mean \"ic_port_mtu\"?",
      "3:1: unknown key \"ethertype\" in [ebcom]; did you mean \"ether_type\"?",
      "4:1: unknown key \"seting\" in [ebcom]; did you mean \"settings\"?"}},
    {"MisspeltTableIsNotMissingAsWell",
     "[ebcon]\nic_port_mtu = 1500\n",
     {"1:2: unknown table \"ebcon\"; did you mean \"ebcom\"?"}},
    {"MissingParameters",
     "\n[ebcom]\n",
     {"2:1: [ebcom]: ic_port_mtu is required", "2:1: [ebcom]: ether_type is required",
      "2:1: [ebcom]: settings is required"}},
    {"MissingPathKeys",
     after_ebcom("\n[[path]]\n"),
     {"6:1: [[path]]: dst_mac is required", "6:1: [[path]]: port is required"}},
    {"MissingShapingKeys", good_path_with("shaping = { rate = 1 }\n"), {"8:20: shaping.rate requires shaping.burst"}},
    {"WrongTypes",
     "node = 1\npath = 2\n[ebcom]\nic_port_mtu = \"1500\"\nether_type = 1.5\nsettings = 3\n",
     {"1:8: node: expected a table, not a whole number", "2:8: path: use [[path]], once for each path",
      "5:14: ether_type: expected a number or a string, not a fraction",
      "6:12: settings: \"3\" is not 2 comma-separated numbers"}},
    {"WrongTypesInPath",
     path_with("dst_mac = 5\nport = true\nshaping = 100\ncount = []\n"),
     {"6:11: dst_mac: \"5\" is not a MAC address such as 02:00:00:02:00:01",
      "7:8: port: expected a number or a string, not a boolean", "8:11: shaping: expected a table, not a whole number",
      "9:9: count: expected a number or a string, not an array"}},
    {"PathIsOneTable", after_ebcom("[path]\nport = 6\n"), {"5:1: path: use [[path]], once for each path"}},
    {"PathsAreNoTables", "path = [1]\n" + ebcom_table, {"1:9: path: expected a table, not a whole number"}},
    {"TooManySettings",
     "[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, 2, 3]\n",
     {"4:12: settings: \"1,2,3\" is not 2 comma-separated numbers"}},
    {"SettingThatIsNoNumber",
     "[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, true]\n",
     {"4:12: settings: expected a number or a string, not an array"}},
    {"ParametersOutOfRange",
     "[node]\nmpid = 256\n[ebcom]\nic_port_mtu = 67\nether_type = 0x5FF\nsettings = [16, -1]\n",
     {"2:8: mpid: 256 is not in the range 1 to 255", "4:15: ic_port_mtu: 67 is not in the range 68 to 65535 octets",
      "5:14: ether_type: 0x5FF is not in the range 0x0600 to 0xFFFF",
      "6:12: settings: 16 is not in the range 0 to 15"}},
    {"ParametersAboveTheirRange",
     "[node]\nmpid = 0\n[ebcom]\nic_port_mtu = 65536\nether_type = 0x10000\nsettings = [9223372036854775807, 0]\n",
     {"2:8: mpid: 0 is not in the range 1 to 255", "4:15: ic_port_mtu: 65536 is not in the range 68 to 65535 octets",
      "5:14: ether_type: 0x10000 is not in the range 0x0600 to 0xFFFF",
      "6:12: settings: 9223372036854775807 is not in the range 0 to 15"}},
    {"ShapingOutOfRange",
     good_path_with("shaping = { rate = 0, burst = \"1 MiB\", threshold = 0 }\n"),
     {"8:20: shaping.rate: 0 is not in the range 1 to 4294967295 kbit/s",
      "8:31: shaping.burst: \"1 MiB\" is not in the range 1 to 1048575 octets",
      "8:52: shaping.threshold: 0 is not in the range 256 to 4294967040 octets"}},
    {"ShapingFarOutOfRange",
     good_path_with("shaping = { rate = \"99999999999999999999 Gbit/s\", burst = -1, threshold = 4294967296 }\n"),
     {"8:20: shaping.rate: \"99999999999999999999 Gbit/s\" is not in the range 1 to 4294967295 kbit/s",
      "8:59: shaping.burst: -1 is not in the range 1 to 1048575 octets",
      "8:75: shaping.threshold: 4294967296 is not in the range 256 to 4294967040 octets"}},
    {"BadUnits",
     good_path_with("shaping = { rate = \"100 MBit\", burst = \"64\", threshold = \"1 GiB\" }\n"),
     {"8:20: shaping.rate: \"100 MBit\" is not a whole number with one of the units kbit/s, Mbit/s or Gbit/s",
      "8:58: shaping.threshold: \"1 GiB\" is not a whole number with one of the units octets, KiB or MiB"}},
    {"ThresholdInPartsOfABlock",
     good_path_with("shaping = { rate = 1, burst = 1, threshold = 1000 }\n"),
     {"8:46: shaping.threshold: 1000 octets are not a multiple of 256 octets"}},
    {"CountOutOfRange",
     good_path_with("count = 0\n") + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = 7\ncount = 100001\n",
     {"8:9: count: 0 is not in the range 1 to 100000", "12:9: count: 100001 is not in the range 1 to 100000"}},
    {"CountPastTheLastAddress",
     path_with("dst_mac = \"02:00:00:ff:ff:fe\"\nport = 6\ncount = 3\n"),
     {"8:9: count: at most 2 paths from 02:00:00:ff:ff:fe on: only the last three octets count up"}},
    {"MalformedMac",
     path_with("dst_mac = \"02:00:00:02:00\"\nport = 6\n"),
     {"6:11: dst_mac: \"02:00:00:02:00\" is not a MAC address such as 02:00:00:02:00:01"}},
    {"MulticastMac",
     path_with("dst_mac = \"01:00:5e:00:00:01\"\nport = 6\n"),
     {"6:11: dst_mac: 01:00:5e:00:00:01 is not a unicast address"}},
    {"NobodysMac",
     path_with("dst_mac = \"0000.0000.0000\"\nport = 6\n"),
     {"6:11: dst_mac: 00:00:00:00:00:00 is not a unicast address"}},
    {"UnknownPortName",
     path_with("dst_mac = \"02:00:00:02:00:01\"\nport = \"RLU5P\"\n"),
     {"7:8: port: unknown port \"RLU5P\""}},
    {"UnknownPortNumber", path_with("dst_mac = \"02:00:00:02:00:01\"\nport = 51\n"), {"7:8: port: unknown port 51"}},
    {"PortWithoutEbcomByName",
     path_with("dst_mac = \"02:00:00:02:00:01\"\nport = \"debug\"\n"),
     {"7:8: port: DEBUG (14) does not carry EBCOM; " + ports}},
    {"PortWithoutEbcomByNumber",
     path_with("dst_mac = \"02:00:00:02:00:01\"\nport = 43\n"),
     {"7:8: port: MZ-KES_P1 (43) does not carry EBCOM; " + ports}},
    {"EioaOnPortZero",
     path_with("dst_mac = \"02:00:00:01:00:01\"\nport = 0\n"),
     {"7:8: port: 02:00:00:01:00:01 is an EIOA destination, and port NONE (0) has no way there"}},
    {"OtherShapingOnTheSamePort",
     good_path_with("shaping = { rate = 1, burst = 1, threshold = 256 }\n") +
         "[[path]]\ndst_mac = \"02:00:00:02:00:02\"\nport = 6\nshaping = { rate = 2, burst = 1, threshold = 256 }\n"
         "[[path]]\ndst_mac = \"02:00:00:02:00:03\"\nport = 6\n",
     {"12:20: shaping.rate: differs from that of the path in line 5 on the same port, RLU1P (6)",
      "13:1: shaping.rate: differs from that of the path in line 5 on the same port, RLU1P (6)"}},
    {"TooManyPathsOnAPort", good_path_with("count = 65536\n"), {"8:9: count: more than 65535 paths on port RLU1P (6)"}},
    {"MissingPcepKeys",
     after_ebcom("[[pcep]]\npriority = 1\n"),
     {"5:1: [[pcep]]: id is required", "5:1: [[pcep]]: remote_id is required", "5:1: [[pcep]]: local_mac is required",
      "5:1: [[pcep]]: remote_mac is required", "5:1: [[pcep]]: vlan is required"}},
    {"MissingMulticastKeys", after_ebcom("[[multicast]]\n"), {"5:1: [[multicast]]: id is required"}},
    {"UnknownKeyInPcep",
     after_ebcom(pcep_table("1") + "vlan_id = 5\npriorty = 1\n"),
     {"11:1: unknown key \"vlan_id\" in [[pcep]]",
      "12:1: unknown key \"priorty\" in [[pcep]]; did you mean \"priority\"?"}},
    {"UnknownKeyInMulticast",
     after_ebcom("[[multicast]]\nid = 1\nmembers = []\nmember = [1]\n"),
     {"8:1: unknown key \"member\" in [[multicast]]; did you mean \"members\"?"}},
    {"PcepIsOneTable", after_ebcom("[pcep]\nid = 6\n"), {"5:1: pcep: use [[pcep]], once for each pcep"}},
    {"MulticastIsOneTable",
     after_ebcom("[multicast]\nid = 6\n"),
     {"5:1: multicast: use [[multicast]], once for each multicast"}},
    {"WrongTypesInPcep",
     after_ebcom("[[pcep]]\nid = \"1\"\nremote_id = 1.5\nlocal_mac = 5\nremote_mac = []\nvlan = true\n"
                 "priority = \"high\"\n"),
     {"7:13: remote_id: expected a number or a string, not a fraction",
      "8:13: local_mac: \"5\" is not a MAC address such as 02:00:00:02:00:01",
      "9:14: remote_mac: expected a number or a string, not an array",
      "10:8: vlan: expected a number or a string, not a boolean", "11:12: priority: \"high\" is not a whole number"}},
    {"WrongTypesInMulticast",
     after_ebcom("[[multicast]]\nid = {}\nmembers = 1\n[[multicast]]\nid = 2\nmembers = [\"1\", [2]]\n"),
     {"6:6: id: expected a number or a string, not a table", "7:11: members: expected an array, not a whole number",
      "10:12: members: no PCEP of this file has the id 1",
      "10:17: members: expected a number or a string, not an array"}},
    {"PcepBelowItsRanges",
     after_ebcom("[[pcep]]\nid = 0\nremote_id = -1\nlocal_mac = \"02:00:00:02:00:01\"\n"
                 "remote_mac = \"02:00:00:02:00:02\"\nvlan = -1\npriority = -1\n"),
     {"6:6: id: 0 is not in the range 1 to 511", "7:13: remote_id: -1 is not in the range 0 to 16777215",
      "10:8: vlan: -1 is not in the range 0 to 4095", "11:12: priority: -1 is not in the range 0 to 7"}},
    {"PcepAboveItsRanges",
     after_ebcom("[[pcep]]\nid = 512\nremote_id = 0x1000000\nlocal_mac = \"02:00:00:02:00:01\"\n"
                 "remote_mac = \"02:00:00:02:00:02\"\nvlan = 4096\npriority = 8\n"),
     {"6:6: id: 512 is not in the range 1 to 511", "7:13: remote_id: 0x1000000 is not in the range 0x0 to 0xFFFFFF",
      "10:8: vlan: 4096 is not in the range 0 to 4095", "11:12: priority: 8 is not in the range 0 to 7"}},
    {"PcepAddressesOfNoStation",
     after_ebcom("[[pcep]]\nid = 1\nremote_id = 1\nlocal_mac = \"here\"\nremote_mac = \"ff:ff:ff:ff:ff:ff\"\n"
                 "vlan = 1\n"),
     {"8:13: local_mac: \"here\" is not a MAC address such as 02:00:00:02:00:01",
      "9:14: remote_mac: ff:ff:ff:ff:ff:ff is not a unicast address"}},
    {"MulticastOutOfRange",
     after_ebcom("[[multicast]]\nid = 512\nmembers = [0, 512]\n"),
     {"6:6: id: 512 is not in the range 1 to 511", "7:12: members: 0 is not in the range 1 to 511",
      "7:15: members: 512 is not in the range 1 to 511"}},
    {"IdOfAnEarlierPcep",
     after_ebcom(pcep_table("7") + "[[multicast]]\nid = 7\nmembers = []\n" + pcep_table("7")),
     {"12:6: id: 7 is already the id of the PCEP in line 5", "15:6: id: 7 is already the id of the PCEP in line 5"}},
    {"IdOfAnEarlierGroup",
     after_ebcom("[[multicast]]\nid = 7\nmembers = []\n" + pcep_table("7")),
     {"9:6: id: 7 is already the id of the multicast group in line 5"}},
    {"MembersThatAreNoPcepsOfTheFile",
     after_ebcom(pcep_table("7") + "[[multicast]]\nid = 300\nmembers = [7, 8, 300, 7]\n"),
     {"13:15: members: no PCEP of this file has the id 8",
      "13:18: members: 300 is the multicast group in line 11, not a PCEP", "13:23: members: 7 is named twice"}},
    {"MemberThatIsWrongOtherwiseIsAMember",
     after_ebcom("[[pcep]]\nid = 7\nremote_id = 1\nlocal_mac = \"here\"\nremote_mac = \"02:00:00:02:00:01\"\n"
                 "vlan = 1\n[[multicast]]\nid = 300\nmembers = [7]\n"),
     {"8:13: local_mac: \"here\" is not a MAC address such as 02:00:00:02:00:01"}},
    {"TooManyMembers",
     after_ebcom(pcep_tables(17) +
                 "[[multicast]]\nid = 300\nmembers = [1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,\n17]\n"),
     {"110:1: members: more than 16 in one group"}},
    {"TooManyGroups", after_ebcom(group_tables(32)), {"95:1: [[multicast]]: more than 30 groups"}},
    {"MissingTrafficKeys",
     after_ebcom("[[traffic]]\n"),
     {"5:1: [[traffic]]: to or from is required", "5:1: [[traffic]]: octets is required",
      "5:1: [[traffic]]: rate or frames_per_second is required"}},
    {"TrafficWithBothOfTwo",
     after_ebcom("[[traffic]]\nto = '02:00:00:02:00:01'\nfrom = 1\noctets = 1\nrate = 1\nframes_per_second = 1\n"),
     {"7:8: to and from cannot be used together", "10:21: rate and frames_per_second cannot be used together"}},
    {"UnknownKeyInTraffic",
     after_ebcom("[[traffic]]\nfrom = 512\noctet = 1\nrate = 1\n"),
     {"6:8: from: 512 is not in the range 1 to 511",
      "7:1: unknown key \"octet\" in [[traffic]]; did you mean \"octets\"?"}},
    {"TrafficOutOfRange",
     after_ebcom("[[traffic]]\nto = 'there'\noctets = 65536\nrate = '5 Mbit'\nburst = 0\n"
                 "start = '1 h'\nstop = '0 s'\n"),
     {"6:6: to: \"there\" is not a MAC address such as 02:00:00:02:00:01",
      "7:10: octets: 65536 is not in the range 1 to 65535 octets",
      "8:8: rate: \"5 Mbit\" is not a whole number with one of the units kbit/s, Mbit/s or Gbit/s",
      "9:9: burst: 0 is not in the range 1 to 1000000 frames",
      "10:9: start: \"1 h\" is not a whole number with one of the units ns, us, ms or s",
      "11:8: stop: \"0 s\" is not in the range 1 ns to 1000000 s"}},
    {"TimesWithoutAUnit",
     after_ebcom(pcep_table("1") + "[[traffic]]\nfrom = 1\noctets = 1\nrate = 1\nstart = 5\nstop = 1.5\n"),
     {"15:9: start: \"5\" is not a whole number with one of the units ns, us, ms or s",
      "16:8: stop: expected a number or a string, not a fraction"}},
    {"StopThatIsNotAfterTheStart",
     after_ebcom(pcep_table("1") + "[[traffic]]\nfrom = 1\noctets = 1\nrate = 1\nstart = '1 s'\nstop = '1000 ms'\n"),
     {"16:8: stop: is not later than the start"}},
    {"TrafficOfMoreOfferingsThanASecondTakes",
     after_ebcom(pcep_table("1") + "[[traffic]]\nfrom = 1\noctets = 1\nrate = '1 Gbit/s'\n"),
     {"14:8: rate: more than 1000000 frames or bursts per second; larger bursts reduce them"}},
    {"TrafficToNobody",
     good_path_with("count = 2\n[[traffic]]\nto = '02:00:00:02:00:03'\noctets = 1\nrate = 1\n"
                    "[[traffic]]\nto = '02:00:00:02:00:02'\noctets = 1\nrate = 1\n"),
     {"10:6: to: no path of this file leads to 02:00:00:02:00:03, and no PCEP has it as its local address"}},
    {"TrafficToAPathThatIsWrongItselfIsNotTold",
     path_with("dst_mac = '02:00:00:02:00:01'\nport = 99\n"
               "[[traffic]]\nto = '02:00:00:02:00:01'\noctets = 1\nrate = 1\n"),
     {"7:8: port: unknown port 99"}},
    {"TrafficFromNobody",
     after_ebcom(pcep_table("1") + "[[traffic]]\nfrom = 2\noctets = 1\nrate = 1\n"),
     {"12:8: from: no PCEP and no multicast group of this file has the id 2"}},
    {"ProblemsOfReaderAndRulesInOrderOfTheirPlaces",
     path_with("dst_mac = \"02:00:00:01:00:01\"\nport = 0\n[[path]]\nport = 99\n[node]\nmpid = \"x\"\n"),
     {"7:8: port: 02:00:00:01:00:01 is an EIOA destination, and port NONE (0) has no way there",
      "8:1: [[path]]: dst_mac is required", "9:8: port: unknown port 99", "11:8: mpid: \"x\" is not a whole number"}},
};

class BadFile : public testing::TestWithParam<bad_file>
{
};

TEST_P(BadFile, IsRefusedWithThePlaceOfEveryProblem)
{
    std::string expected;
    for (const std::string &problem : GetParam().problems)
        expected += "node.toml:" + problem + "\n";
    const size_t count = GetParam().problems.size();
    expected += "node.toml: " + std::to_string(count) + (count == 1 ? " problem" : " problems");
    expected += ", nothing was started\n";

    const program_outcome outcome = kelctl_up(GetParam().text);
    EXPECT_EQ(outcome.err, expected);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.status, 2);
}

INSTANTIATE_TEST_SUITE_P(Kinds, BadFile, testing::ValuesIn(bad_files),
                         [](const auto &tested) { return std::string(tested.param.name); });

TEST(BadFile, StartsNothingThatCouldFailOrBeTraced)
{
    const auto outcome = kelctl_up("", {{"KEL_SOFTNODE_FAULTS", "kel_init_attach=3"}}, {"--trace"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "node.toml:1:1: [ebcom] is required\nnode.toml: 1 problem, nothing was started\n");
}

TEST(UnreadableFile, IsToldWithTheSystemsReason)
{
    const auto missing = run_kelctl({.arguments = {"up", "/nowhere/node.toml"}});
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.err, "/nowhere/node.toml: cannot be read: No such file or directory\n"
                           "/nowhere/node.toml: 1 problem, nothing was started\n");
    const auto folder = run_kelctl({.arguments = {"up", "/"}});
    EXPECT_EQ(folder.status, 2);
    EXPECT_THAT(folder.err, testing::StartsWith("/: cannot be read: Is a directory\n"));
}

TEST(UnreadableFile, NameWithControlCharactersIsPrintedWithoutThem)
{
    EXPECT_EQ(run_kelctl({.arguments = {"up", "/nowhere/\x1b[31m\nnode.toml"}}).err,
              "/nowhere/?[31m?node.toml: cannot be read: No such file or directory\n"
              "/nowhere/?[31m?node.toml: 1 problem, nothing was started\n");
}

TEST(UnreadableFile, EndlessDeviceIsNotReadToItsEnd)
{
    const auto outcome = run_kelctl({.arguments = {"up", "/dev/zero"}});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, testing::StartsWith("/dev/zero: is larger than 16 MiB\n"));
}

} // namespace
