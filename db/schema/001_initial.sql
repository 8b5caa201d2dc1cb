-- The pharmacy's main database: every table the library reads or writes.
--
-- One text for SQLite and PostgreSQL. The words between @ signs stand for the types
-- that differ between the two and are filled in for the back end at hand:
--   @KEY@       integer key numbered by the database (the new-key procedures return it)
--   @DATETIME@  local wall-clock date and time to the second
--   @TEXT@      unbounded text; every cut to a width happens in the code
--   @MONEY@     a currency amount
--   @BIT@       a bit-like flag: 0 or 1, any other non-zero value is stored as 1
--               (migration 002 installs the normalisation)
-- Flags that statements write as -1 are plain smallint. Identifiers stay unquoted, so
-- that every statement may spell them in any letter case.

CREATE TABLE Store (
    StoreID @KEY@,
    Name @TEXT@,
    AddressL1 @TEXT@,
    AddressL2 @TEXT@,
    City @TEXT@,
    State @TEXT@,
    Zip @TEXT@,
    Phone @TEXT@,
    Fax @TEXT@,
    Email @TEXT@,
    WebAddress @TEXT@
);

CREATE TABLE Options (
    OptionsID integer NOT NULL PRIMARY KEY,
    DefaultCA integer,
    DefaultINS integer,
    SalesTax double precision
);

CREATE TABLE RPH (
    RPhID @KEY@,
    LastName @TEXT@,
    FirstName @TEXT@,
    MI @TEXT@,
    License @TEXT@
);

CREATE TABLE PATIENT (
    PatientID @KEY@,
    LastName @TEXT@,
    FirstName @TEXT@,
    MI @TEXT@,
    AddressLine1 @TEXT@,
    AddressLine2 @TEXT@,
    City @TEXT@,
    State @TEXT@,
    ZipCode @TEXT@,
    Country @TEXT@,
    BillingAddress @TEXT@,
    BillingCity @TEXT@,
    BillingState @TEXT@,
    BillingZipCode @TEXT@,
    Telephone @TEXT@,
    Fax @TEXT@,
    Gender @TEXT@,
    Birthdate @DATETIME@,
    AccountNumber @TEXT@,
    MedicalRecordNum @TEXT@,
    Unit @TEXT@,
    Room @TEXT@,
    Allergies @TEXT@,
    Location @TEXT@,
    WeightKg double precision,
    HeightCm double precision,
    Notes @TEXT@,
    ChargeAccount smallint,
    ARCustomerID integer,
    ForeignSigs @TEXT@,
    MarriageStatus @TEXT@,
    StudentStatus @TEXT@,
    WorkPhone @TEXT@,
    EMail @TEXT@,
    PatInsID integer,
    PatAllID integer,
    Conditions @TEXT@,
    EasyOpen smallint,
    SSN @TEXT@,
    PriceTableID integer,
    AllergiesLarge @TEXT@,
    Diagnosis @TEXT@,
    EmployerID integer,
    InjuryType @TEXT@,
    QBListID @TEXT@,
    InjuryDate @DATETIME@,
    Spanish smallint,
    HIPPA smallint,
    AutoCharge smallint,
    FacilityID integer,
    MDID integer,
    AdmitDate @DATETIME@,
    CCNumber @TEXT@,
    CCExpMonth @TEXT@,
    CCExpYear @TEXT@,
    CCName @TEXT@,
    CCAddress @TEXT@,
    CCZip @TEXT@,
    CCAddressSame smallint,
    Pregnancy smallint,
    Smoker smallint,
    ImportID integer,
    DateChanged @DATETIME@,
    Deleted @BIT@
);

CREATE TABLE PATALL (
    PatAllID @KEY@,
    PatientID integer,
    Code @TEXT@,
    Allergies @TEXT@
);

CREATE TABLE INSURANCE (
    InsID @KEY@,
    InsCode @TEXT@,
    Name @TEXT@,
    Address @TEXT@,
    City @TEXT@,
    State @TEXT@,
    Zip @TEXT@,
    Phone @TEXT@,
    Fax @TEXT@,
    Notes @TEXT@,
    Contact @TEXT@,
    Fee @MONEY@,
    FeePS smallint,
    Copay @MONEY@,
    CopayPS smallint,
    GenericFee @MONEY@,
    GenericCopay @MONEY@,
    GenCopayPS smallint,
    DaysSupply @BIT@,
    Basis @TEXT@,
    Form @TEXT@,
    ID @TEXT@,
    Invoice @TEXT@,
    UandC @BIT@,
    PatCopay @BIT@,
    DoctorID @TEXT@,
    OnLineLimit smallint,
    OnLinePhone @TEXT@,
    Device @TEXT@,
    ModemSpeed @TEXT@,
    DB @TEXT@,
    SB @TEXT@,
    Parity @TEXT@,
    BIN @TEXT@,
    ProcNumb @TEXT@,
    BrandPT smallint,
    GenericPT smallint,
    OnLine @BIT@,
    Internet @BIT@,
    VendorID @TEXT@,
    ClaimFields @TEXT@,
    IDQualifier @TEXT@,
    Deleted @BIT@
);

CREATE TABLE PATINS (
    PatInsID @KEY@,
    OPatInsID integer,
    InsID integer,
    PatientID integer,
    InsCode @TEXT@,
    GroupNumber @TEXT@,
    InsuranceGroup @TEXT@,
    Relationship @TEXT@,
    CardNumber @TEXT@,
    SubscribersName @TEXT@,
    ExpDate @DATETIME@,
    PersonNumber @TEXT@,
    Location @TEXT@,
    OtherCoverage @TEXT@,
    OtherType @TEXT@,
    PaidQualifier @TEXT@,
    Clarification @TEXT@
);

CREATE TABLE PHYSIC (
    MDID @KEY@,
    LastName @TEXT@,
    FirstName @TEXT@,
    MI @TEXT@,
    Title @TEXT@,
    AddressLine1 @TEXT@,
    AddressLine2 @TEXT@,
    City @TEXT@,
    State @TEXT@,
    Zip @TEXT@,
    Telephone @TEXT@,
    Telephone2 @TEXT@,
    FaxNumber @TEXT@,
    DateLastSeen @DATETIME@,
    Practice @TEXT@,
    Comments @TEXT@,
    DoctorCode @TEXT@,
    DEA @TEXT@,
    StateLic @TEXT@,
    Provider1 @TEXT@,
    Provider2 @TEXT@,
    NumberOfScripts double precision,
    PriceAmount double precision,
    CostAmount double precision,
    LastRxDate @DATETIME@,
    EMail @TEXT@,
    ImportID integer,
    DateChanged @DATETIME@
);

CREATE TABLE DRUG (
    DrugID @KEY@,
    Name @TEXT@,
    Dosage @TEXT@,
    PackageSize integer,
    dPkgSize double precision,
    NDC @TEXT@,
    Schedule @TEXT@,
    AWP double precision,
    AWPUpdate smallint,
    Cost double precision,
    CostUpdate smallint,
    MAC double precision,
    MACUpdate smallint,
    Generic smallint,
    PriceTableID integer,
    Expiration @DATETIME@,
    Lot @TEXT@,
    GCN @TEXT@,
    Compound smallint,
    Stock double precision,
    MinReorderQty double precision,
    ParQty double precision,
    PEC integer,
    Note @TEXT@,
    MonoNum integer,
    GenericName @TEXT@,
    BrandName @TEXT@,
    RouteCode @TEXT@,
    Strength @TEXT@,
    DrugClass @TEXT@,
    CategoryCode @TEXT@,
    DESI smallint,
    UD smallint,
    ObsoleteDate @TEXT@,
    Units @TEXT@,
    Therapy @TEXT@,
    AWPDate @TEXT@,
    CostDate @TEXT@,
    MACDate @TEXT@,
    ImportID integer,
    DecSize double precision,
    HCPC @TEXT@,
    TXR @TEXT@,
    ItemNumber @TEXT@,
    MFR @TEXT@,
    EnableAutoFill smallint,
    DefaultSig @TEXT@,
    DefaultQty double precision,
    DefaultRefills smallint,
    DefaultDS smallint,
    DateChanged @DATETIME@
);

-- A drug's dosing times; a row with a PatientID holds that patient's own times.
CREATE TABLE DrugTimes (
    DrugTimesID @KEY@,
    DrugID integer,
    PatientID integer,
    Times @TEXT@,
    DateChanged @DATETIME@
);

CREATE TABLE Facility (
    FacilityID @KEY@,
    Name @TEXT@,
    AddressL1 @TEXT@,
    AddressL2 @TEXT@,
    City @TEXT@,
    State @TEXT@,
    Zip @TEXT@,
    Phone @TEXT@,
    Fax @TEXT@,
    Contact @TEXT@,
    ContactPhone @TEXT@,
    Notes @TEXT@,
    UserName @TEXT@,
    Password @TEXT@,
    DateChanged @DATETIME@
);

-- One fill: the original (RefillNumber 0) or a refill of prescription Number.
CREATE TABLE RXINFO (
    RXInfoID @KEY@,
    Number integer,
    RefillNumber integer,
    LogID integer,
    Date @DATETIME@,
    Qty double precision,
    MetricQty double precision,
    Price double precision,
    RetailPrice double precision,
    Copay double precision,
    QtyRemain double precision,
    DS @TEXT@,
    Patient @TEXT@,
    PatientID integer,
    Doctor @TEXT@,
    MDID integer,
    PatInsID integer,
    InsID integer,
    SIG @TEXT@,
    Compound smallint,
    Drug @TEXT@,
    DrugID integer,
    Refills double precision,
    OriginalRefills integer,
    Cost double precision,
    PriceTableID integer,
    AWP double precision,
    PA smallint,
    PANumber @TEXT@,
    DNDC @TEXT@,
    Voided smallint DEFAULT 0,
    OnHold smallint DEFAULT 0,
    OriginalDate @DATETIME@,
    OriginalQty double precision,
    DAWField @TEXT@,
    RPhID integer,
    TechID integer,
    Schedule @TEXT@,
    Notes @TEXT@,
    SigCodes @TEXT@,
    OtherDenial @TEXT@,
    DURConflict @TEXT@,
    DURIntervention @TEXT@,
    DUROutcome @TEXT@,
    AuthNumber @TEXT@,
    Paid smallint,
    ARCharge smallint,
    Online smallint,
    OnlineResult @TEXT@,
    Diagnosis @TEXT@,
    OtherPayor double precision,
    DenialDate @DATETIME@,
    HCPC @TEXT@,
    Form smallint,
    ControlNumber @TEXT@,
    Transferred smallint,
    QBTxnID @TEXT@,
    PAMC @TEXT@,
    DURData @TEXT@,
    OtherInsCode @TEXT@,
    EligibilityCode @TEXT@,
    OriginCode @TEXT@,
    LevelOfService @TEXT@,
    GeneratedRx double precision,
    Units @TEXT@,
    InsData @TEXT@,
    FormulaID smallint,
    OPatInsID integer,
    OInsPaid smallint,
    OInsAmount double precision,
    OInsCopay double precision,
    PInsAmount double precision,
    PInsCopay double precision,
    OAuthNumber @TEXT@,
    OOnlineResult @TEXT@,
    OtherCoverage @TEXT@,
    OtherType @TEXT@,
    PaidQualifier @TEXT@,
    OtherDate @DATETIME@,
    Deleted @BIT@,
    OtherIDQualifier @TEXT@,
    OtherID @TEXT@,
    ProductIDQualifier @TEXT@,
    DateChanged @DATETIME@
);

CREATE INDEX RXINFO_Number ON RXINFO (Number, RefillNumber);
CREATE INDEX RXINFO_PatientID ON RXINFO (PatientID);
CREATE INDEX RXINFO_GeneratedRx ON RXINFO (GeneratedRx);

-- The compound ingredients of a fill.
CREATE TABLE Ingredients (
    IngredientID @KEY@,
    RxInfoID integer,
    NAME @TEXT@,
    NDC @TEXT@,
    CostBasis @TEXT@,
    Qty double precision,
    Cost double precision,
    HCPC @TEXT@
);

CREATE INDEX Ingredients_RxInfoID ON Ingredients (RxInfoID);

-- Every claim request sent and every response received.
CREATE TABLE Claims (
    ClaimID @KEY@,
    RxInfoID integer,
    Response smallint,
    Reversal smallint,
    OtherIns smallint,
    ClaimText @TEXT@,
    HeaderText @TEXT@,
    ClaimDateTime @DATETIME@
);

CREATE INDEX Claims_RxInfoID ON Claims (RxInfoID);

-- The change log of the fills: Changes is an XML document of old and new values.
CREATE TABLE LOG_RX (
    LogRxID @KEY@,
    LogDate @DATETIME@,
    RxInfoID integer,
    Changes @TEXT@,
    RPhID integer,
    TechID integer
);

CREATE INDEX LOG_RX_RxInfoID ON LOG_RX (RxInfoID);

-- The want list: at most one open order line per drug.
CREATE TABLE WANTBOOK (
    WantbookID @KEY@,
    DrugID integer,
    Date @DATETIME@,
    OrderQty integer
);

CREATE INDEX WANTBOOK_DrugID ON WANTBOOK (DrugID);

-- Price tables: one key row per table, and its bands in PriceTableInfo. UseCost -1
-- prices from the cost, 0 from the AWP; BreakOnQty not 0 picks the band by quantity.
CREATE TABLE PriceTable (
    PriceTableID integer NOT NULL PRIMARY KEY,
    Description @TEXT@,
    UseCost smallint DEFAULT 0,
    BreakOnQty smallint DEFAULT 0
);

CREATE TABLE PriceTableInfo (
    PriceTableInfoID @KEY@,
    PriceTableID integer,
    BreakPoint double precision,
    MarkUpMultiplier double precision,
    MarkUpAddend double precision
);

CREATE INDEX PriceTableInfo_PriceTableID ON PriceTableInfo (PriceTableID, BreakPoint);

-- The key rows in the shape the alternate source uses: AWP 0 prices from the cost.
CREATE TABLE PriceTableKey (
    PriceTableID integer NOT NULL PRIMARY KEY,
    AWP smallint,
    BreakOnQty smallint
);

-- The list of automatic refills.
CREATE TABLE AutoRefill (
    AutoRefillID @KEY@,
    PatientID integer,
    Number integer,
    PatientName @TEXT@,
    Description @TEXT@,
    LastDate @DATETIME@,
    SpecificDay smallint,
    IntervalDays integer
);
