-- The pharmacy's main database: every table the library reads or writes.
--
-- One text for SQLite and PostgreSQL. The words between @ signs are the data layer's type
-- tokens, filled in for the back end at hand: @KEY@ an integer key numbered by the
-- database (the new-key procedures return it), @DATETIME@ local wall-clock time to the
-- second, @TEXT@ unbounded text (every cut to a width happens in the code), @MONEY@ a
-- currency amount, @BIT@ a bit-like flag (0 or 1; migration 002 stores any other non-zero
-- value as 1), and @INT@, @SMALLINT@, @DOUBLE@ for 32-bit, 16-bit and floating numbers.
-- Flags that statements write as -1 are plain @SMALLINT@. Identifiers stay unquoted, so
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
    OptionsID @INT@ NOT NULL PRIMARY KEY,
    DefaultCA @INT@,
    DefaultINS @INT@,
    SalesTax @DOUBLE@
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
    WeightKg @DOUBLE@,
    HeightCm @DOUBLE@,
    Notes @TEXT@,
    ChargeAccount @SMALLINT@,
    ARCustomerID @INT@,
    ForeignSigs @TEXT@,
    MarriageStatus @TEXT@,
    StudentStatus @TEXT@,
    WorkPhone @TEXT@,
    EMail @TEXT@,
    PatInsID @INT@,
    PatAllID @INT@,
    Conditions @TEXT@,
    EasyOpen @SMALLINT@,
    SSN @TEXT@,
    PriceTableID @INT@,
    AllergiesLarge @TEXT@,
    Diagnosis @TEXT@,
    EmployerID @INT@,
    InjuryType @TEXT@,
    QBListID @TEXT@,
    InjuryDate @DATETIME@,
    Spanish @SMALLINT@,
    HIPPA @SMALLINT@,
    AutoCharge @SMALLINT@,
    FacilityID @INT@,
    MDID @INT@,
    AdmitDate @DATETIME@,
    CCNumber @TEXT@,
    CCExpMonth @TEXT@,
    CCExpYear @TEXT@,
    CCName @TEXT@,
    CCAddress @TEXT@,
    CCZip @TEXT@,
    CCAddressSame @SMALLINT@,
    Pregnancy @SMALLINT@,
    Smoker @SMALLINT@,
    ImportID @INT@,
    DateChanged @DATETIME@,
    Deleted @BIT@ DEFAULT 0
);

CREATE TABLE PATALL (
    PatAllID @KEY@,
    PatientID @INT@,
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
    FeePS @SMALLINT@,
    Copay @MONEY@,
    CopayPS @SMALLINT@,
    GenericFee @MONEY@,
    GenericCopay @MONEY@,
    GenCopayPS @SMALLINT@,
    DaysSupply @BIT@,
    Basis @TEXT@,
    Form @TEXT@,
    ID @TEXT@,
    Invoice @TEXT@,
    UandC @BIT@,
    PatCopay @BIT@,
    DoctorID @TEXT@,
    OnLineLimit @SMALLINT@,
    OnLinePhone @TEXT@,
    Device @TEXT@,
    ModemSpeed @TEXT@,
    DB @TEXT@,
    SB @TEXT@,
    Parity @TEXT@,
    BIN @TEXT@,
    ProcNumb @TEXT@,
    BrandPT @SMALLINT@,
    GenericPT @SMALLINT@,
    OnLine @BIT@,
    Internet @BIT@,
    VendorID @TEXT@,
    ClaimFields @TEXT@,
    IDQualifier @TEXT@,
    Deleted @BIT@ DEFAULT 0
);

CREATE TABLE PATINS (
    PatInsID @KEY@,
    OPatInsID @INT@,
    InsID @INT@,
    PatientID @INT@,
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
    NumberOfScripts @DOUBLE@,
    PriceAmount @DOUBLE@,
    CostAmount @DOUBLE@,
    LastRxDate @DATETIME@,
    EMail @TEXT@,
    ImportID @INT@,
    DateChanged @DATETIME@
);

CREATE TABLE DRUG (
    DrugID @KEY@,
    Name @TEXT@,
    Dosage @TEXT@,
    PackageSize @INT@,
    dPkgSize @DOUBLE@,
    NDC @TEXT@,
    Schedule @TEXT@,
    AWP @DOUBLE@,
    AWPUpdate @SMALLINT@,
    Cost @DOUBLE@,
    CostUpdate @SMALLINT@,
    MAC @DOUBLE@,
    MACUpdate @SMALLINT@,
    Generic @SMALLINT@,
    PriceTableID @INT@,
    Expiration @DATETIME@,
    Lot @TEXT@,
    GCN @TEXT@,
    Compound @SMALLINT@,
    Stock @DOUBLE@,
    MinReorderQty @DOUBLE@,
    ParQty @DOUBLE@,
    PEC @INT@,
    Note @TEXT@,
    MonoNum @INT@,
    GenericName @TEXT@,
    BrandName @TEXT@,
    RouteCode @TEXT@,
    Strength @TEXT@,
    DrugClass @TEXT@,
    CategoryCode @TEXT@,
    DESI @SMALLINT@,
    UD @SMALLINT@,
    ObsoleteDate @TEXT@,
    Units @TEXT@,
    Therapy @TEXT@,
    AWPDate @TEXT@,
    CostDate @TEXT@,
    MACDate @TEXT@,
    ImportID @INT@,
    DecSize @DOUBLE@,
    HCPC @TEXT@,
    TXR @TEXT@,
    ItemNumber @TEXT@,
    MFR @TEXT@,
    EnableAutoFill @SMALLINT@,
    DefaultSig @TEXT@,
    DefaultQty @DOUBLE@,
    DefaultRefills @SMALLINT@,
    DefaultDS @SMALLINT@,
    DateChanged @DATETIME@
);

-- A drug's dosing times; a row with a PatientID holds that patient's own times.
CREATE TABLE DrugTimes (
    DrugTimesID @KEY@,
    DrugID @INT@,
    PatientID @INT@,
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
    Number @INT@,
    RefillNumber @INT@,
    LogID @INT@,
    Date @DATETIME@,
    Qty @DOUBLE@,
    MetricQty @DOUBLE@,
    Price @DOUBLE@,
    RetailPrice @DOUBLE@,
    Copay @DOUBLE@,
    QtyRemain @DOUBLE@,
    DS @TEXT@,
    Patient @TEXT@,
    PatientID @INT@,
    Doctor @TEXT@,
    MDID @INT@,
    PatInsID @INT@,
    InsID @INT@,
    SIG @TEXT@,
    Compound @SMALLINT@,
    Drug @TEXT@,
    DrugID @INT@,
    Refills @DOUBLE@,
    OriginalRefills @INT@,
    Cost @DOUBLE@,
    PriceTableID @INT@,
    AWP @DOUBLE@,
    PA @SMALLINT@,
    PANumber @TEXT@,
    DNDC @TEXT@,
    Voided @SMALLINT@ DEFAULT 0,
    OnHold @SMALLINT@ DEFAULT 0,
    OriginalDate @DATETIME@,
    OriginalQty @DOUBLE@,
    DAWField @TEXT@,
    RPhID @INT@,
    TechID @INT@,
    Schedule @TEXT@,
    Notes @TEXT@,
    SigCodes @TEXT@,
    OtherDenial @TEXT@,
    DURConflict @TEXT@,
    DURIntervention @TEXT@,
    DUROutcome @TEXT@,
    AuthNumber @TEXT@,
    Paid @SMALLINT@,
    ARCharge @SMALLINT@,
    Online @SMALLINT@,
    OnlineResult @TEXT@,
    Diagnosis @TEXT@,
    OtherPayor @DOUBLE@,
    DenialDate @DATETIME@,
    HCPC @TEXT@,
    Form @SMALLINT@,
    ControlNumber @TEXT@,
    Transferred @SMALLINT@,
    QBTxnID @TEXT@,
    PAMC @TEXT@,
    DURData @TEXT@,
    OtherInsCode @TEXT@,
    EligibilityCode @TEXT@,
    OriginCode @TEXT@,
    LevelOfService @TEXT@,
    GeneratedRx @DOUBLE@,
    Units @TEXT@,
    InsData @TEXT@,
    FormulaID @SMALLINT@,
    OPatInsID @INT@,
    OInsPaid @SMALLINT@,
    OInsAmount @DOUBLE@,
    OInsCopay @DOUBLE@,
    PInsAmount @DOUBLE@,
    PInsCopay @DOUBLE@,
    OAuthNumber @TEXT@,
    OOnlineResult @TEXT@,
    OtherCoverage @TEXT@,
    OtherType @TEXT@,
    PaidQualifier @TEXT@,
    OtherDate @DATETIME@,
    Deleted @BIT@ DEFAULT 0,
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
    RxInfoID @INT@,
    NAME @TEXT@,
    NDC @TEXT@,
    CostBasis @TEXT@,
    Qty @DOUBLE@,
    Cost @DOUBLE@,
    HCPC @TEXT@
);

CREATE INDEX Ingredients_RxInfoID ON Ingredients (RxInfoID);

-- Every claim request sent and every response received.
CREATE TABLE Claims (
    ClaimID @KEY@,
    RxInfoID @INT@,
    Response @SMALLINT@,
    Reversal @SMALLINT@,
    OtherIns @SMALLINT@,
    ClaimText @TEXT@,
    HeaderText @TEXT@,
    ClaimDateTime @DATETIME@
);

CREATE INDEX Claims_RxInfoID ON Claims (RxInfoID);

-- The change log of the fills: Changes is an XML document of old and new values.
CREATE TABLE LOG_RX (
    LogRxID @KEY@,
    LogDate @DATETIME@,
    RxInfoID @INT@,
    Changes @TEXT@,
    RPhID @INT@,
    TechID @INT@
);

CREATE INDEX LOG_RX_RxInfoID ON LOG_RX (RxInfoID);

-- The want list: at most one open order line per drug.
CREATE TABLE WANTBOOK (
    WantbookID @KEY@,
    DrugID @INT@,
    Date @DATETIME@,
    OrderQty @INT@
);

CREATE INDEX WANTBOOK_DrugID ON WANTBOOK (DrugID);

-- Price tables: one key row per table, and its bands in PriceTableInfo. UseCost -1
-- prices from the cost, 0 from the AWP; BreakOnQty not 0 picks the band by quantity.
CREATE TABLE PriceTable (
    PriceTableID @INT@ NOT NULL PRIMARY KEY,
    Description @TEXT@,
    UseCost @SMALLINT@ DEFAULT 0,
    BreakOnQty @SMALLINT@ DEFAULT 0
);

CREATE TABLE PriceTableInfo (
    PriceTableInfoID @KEY@,
    PriceTableID @INT@,
    BreakPoint @DOUBLE@,
    MarkUpMultiplier @DOUBLE@,
    MarkUpAddend @DOUBLE@
);

CREATE INDEX PriceTableInfo_PriceTableID ON PriceTableInfo (PriceTableID, BreakPoint);

-- The key rows in the shape the alternate source uses: AWP 0 prices from the cost.
CREATE TABLE PriceTableKey (
    PriceTableID @INT@ NOT NULL PRIMARY KEY,
    AWP @SMALLINT@,
    BreakOnQty @SMALLINT@
);

-- The list of automatic refills.
CREATE TABLE AutoRefill (
    AutoRefillID @KEY@,
    PatientID @INT@,
    Number @INT@,
    PatientName @TEXT@,
    Description @TEXT@,
    LastDate @DATETIME@,
    SpecificDay @SMALLINT@,
    IntervalDays @INT@
);
